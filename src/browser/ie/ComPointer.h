#pragma once

#include <QString>

#include <ole2.h>
#include <utility>

namespace Brindle {

/// Holds one reference to a COM object, or none.
template <typename Interface>
class ComPointer {
public:
    ComPointer() = default;
    /// Takes a reference of its own.
    explicit ComPointer(Interface* object) : object_(object) {
        if (object_)
            object_->AddRef();
    }
    ComPointer(const ComPointer& other) : ComPointer(other.object_) {}
    ComPointer(ComPointer&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ComPointer& operator=(ComPointer other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ComPointer() { Reset(); }

    /// Takes over the reference with which an object comes into the world.
    static ComPointer Adopt(Interface* object) {
        ComPointer pointer;
        pointer.object_ = object;
        return pointer;
    }

    Interface* Get() const { return object_; }
    Interface* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    void Reset() {
        if (Interface* const object = std::exchange(object_, nullptr))
            object->Release();
    }
    /// Where a call puts the reference that it hands out; what was held before is let go.
    Interface** Out() {
        Reset();
        return &object_;
    }
    void** OutVoid() { return reinterpret_cast<void**>(Out()); }

    /// Another interface of the same object; none when it has no such interface.
    template <typename Other>
    ComPointer<Other> As() const {
        ComPointer<Other> other;
        if (object_ && FAILED(object_->QueryInterface(__uuidof(Other), other.OutVoid())))
            return {};
        return other;
    }

private:
    Interface* object_ = nullptr;
};

/// Holds a text in the form in which COM calls hand it over; freed with the object.
class ComText {
public:
    ComText() = default;
    explicit ComText(const QString& text)
        : text_(SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.utf16()), static_cast<UINT>(text.size()))) {}
    ComText(const ComText&) = delete;
    ComText& operator=(const ComText&) = delete;
    ~ComText() { SysFreeString(text_); }

    BSTR Get() const { return text_; }
    BSTR* Out() {
        SysFreeString(std::exchange(text_, nullptr));
        return &text_;
    }
    QString Text() const { return TextOf(text_); }

    static QString TextOf(BSTR text) {
        return QString(reinterpret_cast<const QChar*>(text), static_cast<qsizetype>(SysStringLen(text)));
    }

private:
    BSTR text_ = nullptr;
};

/// Holds a value of any of Automation's types; what it refers to is let go with the object.
class ComValue {
public:
    ComValue() { VariantInit(&value_); }
    explicit ComValue(qint32 number) : ComValue() {
        value_.vt = VT_I4;
        value_.lVal = number;
    }
    ComValue(ComValue&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
    ComValue& operator=(ComValue&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    ~ComValue() { VariantClear(&value_); }

    VARIANT* Get() { return &value_; }

    /// The object that it refers to; none when it is something else.
    ComPointer<IDispatch> Object() const {
        ComValue as;
        if (FAILED(as.Become(value_, VT_DISPATCH)))
            return {};
        return ComPointer<IDispatch>(as.value_.pdispVal);
    }
    /// The text that it is; empty when it is none and cannot be put as one.
    QString Text() const { return TextOf(value_); }
    /// The length of a text, without a copy of it; 0 when it is none.
    qsizetype TextLength() const { return value_.vt == VT_BSTR ? SysStringLen(value_.bstrVal) : 0; }
    /// The whole number that it is; 0 when it is none and cannot be put as one.
    qint32 Number() const { return NumberOf(value_); }

    static QString TextOf(const VARIANT& value) {
        if (value.vt == VT_BSTR) // most of them, among them pages of megabytes
            return ComText::TextOf(value.bstrVal);
        ComValue as;
        return SUCCEEDED(as.Become(value, VT_BSTR)) ? ComText::TextOf(as.value_.bstrVal) : QString();
    }
    static qint32 NumberOf(const VARIANT& value) {
        ComValue as;
        return SUCCEEDED(as.Become(value, VT_I4)) ? static_cast<qint32>(as.value_.lVal) : 0;
    }

private:
    // Follows a reference to the value behind it.
    HRESULT Become(const VARIANT& value, VARTYPE type) {
        ComValue plain;
        const HRESULT followed = VariantCopyInd(&plain.value_, const_cast<VARIANT*>(&value));
        return FAILED(followed) ? followed : VariantChangeType(&value_, &plain.value_, 0, type);
    }

    VARIANT value_;
};

} // namespace Brindle
