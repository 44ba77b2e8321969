#pragma once

#include <ole2.h>

namespace Brindle {

/// Puts the interface that is asked for into `found`; true when it is one of these.
template <typename... Interfaces, typename Object>
bool FindInterface(Object* object, REFIID wanted, void** found) {
    return ((wanted == __uuidof(Interfaces) && (*found = static_cast<Interfaces*>(object), true)) || ...);
}

/// A COM object that implements these interfaces and lives until its last reference is let go. It starts with the one
/// reference of its maker. For one thread.
template <typename First, typename... Others>
class ComObject : public First, public Others... {
public:
    ComObject() = default;
    virtual ~ComObject() = default;
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** found) override {
        if (!found)
            return E_POINTER;
        *found = nullptr;
        if (wanted == IID_IUnknown)
            *found = static_cast<IUnknown*>(static_cast<First*>(this));
        else if (!FindInterface<First, Others...>(this, wanted, found) && !FindMore(wanted, found))
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }

protected:
    /// For what goes beyond the interfaces named: their bases, and those of the object's parts.
    virtual bool FindMore(REFIID, void**) { return false; }

private:
    ULONG references_ = 1;
};

/// A part of a COM object that implements some of its interfaces; references to it are references to the whole, of
/// which it must be a member.
template <typename... Interfaces>
class ComPart : public Interfaces... {
public:
    explicit ComPart(IUnknown& whole) : whole_(whole) {}
    virtual ~ComPart() = default;
    ComPart(const ComPart&) = delete;
    ComPart& operator=(const ComPart&) = delete;

    bool Find(REFIID wanted, void** found) { return FindInterface<Interfaces...>(this, wanted, found); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** found) override {
        return whole_.QueryInterface(wanted, found);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return whole_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return whole_.Release(); }

private:
    IUnknown& whole_;
};

} // namespace Brindle
