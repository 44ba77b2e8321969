#pragma once

#include "browser/ie/ComObject.h"
#include "browser/ie/ComPointer.h"

#include <functional>
#include <iterator>
#include <map>
#include <string>

namespace Brindle::Test {

/// An Automation object whose members are written down: what each gives when it is read or called.
class ScriptedObject final : public ComObject<IDispatch> {
public:
    using Member = std::function<HRESULT(const DISPPARAMS& arguments, VARIANT* result)>;

    static ComPointer<ScriptedObject> Make() { return ComPointer<ScriptedObject>::Adopt(new ScriptedObject); }

    void Set(const std::wstring& name, Member member) { members_[name] = std::move(member); }
    void Remove(const std::wstring& name) { members_.erase(name); }
    void Set(const std::wstring& name, const QString& text) {
        Set(name, [text](const DISPPARAMS&, VARIANT* result) {
            result->vt = VT_BSTR;
            result->bstrVal =
                SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.utf16()), static_cast<UINT>(text.size()));
            return S_OK;
        });
    }
    void Set(const std::wstring& name, long number) {
        Set(name, [number](const DISPPARAMS&, VARIANT* result) {
            result->vt = VT_I4;
            result->lVal = number;
            return S_OK;
        });
    }
    void Set(const std::wstring& name, const ComPointer<ScriptedObject>& object) {
        Set(name, [object](const DISPPARAMS&, VARIANT* result) { return Give(object, result); });
    }
    static HRESULT Give(const ComPointer<ScriptedObject>& object, VARIANT* result) {
        result->vt = VT_DISPATCH;
        result->pdispVal = object.Get();
        result->pdispVal->AddRef();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        const auto member = members_.find(names[0]);
        if (count != 1 || member == members_.end())
            return DISP_E_UNKNOWNNAME;
        *ids = static_cast<DISPID>(std::distance(members_.begin(), member)) + 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO*,
                                     UINT*) override {
        return std::next(members_.begin(), id - 1)->second(*arguments, result);
    }

private:
    std::map<std::wstring, Member> members_;
};

} // namespace Brindle::Test
