#pragma once

#include "browser/ie/ComObject.h"
#include "browser/ie/ComPointer.h"
#include "browser/ie/IeLogin.h"

#include <docobj.h>
#include <mshtmhst.h>
#include <ocidl.h>
#include <servprov.h>

namespace Brindle {

/// What the engine of the pages asks of the program that shows them. Nothing is ever put to the user: script errors
/// count as handled, a script's message boxes as confirmed.
class IePageHost final
    : public ComPart<IDocHostUIHandler, IDocHostShowUI, IOleCommandTarget, IServiceProvider, IDispatch> {
public:
    explicit IePageHost(IUnknown& whole);

    IeLogin& Login() { return *login_.Get(); }
    /// What pages and servers are told; empty: what the system says.
    void SetUserAgent(const QString& userAgent) { userAgent_ = userAgent; }

    // IDocHostUIHandler
    HRESULT STDMETHODCALLTYPE ShowContextMenu(DWORD, POINT*, IUnknown*, IDispatch*) override { return S_FALSE; }
    HRESULT STDMETHODCALLTYPE GetHostInfo(DOCHOSTUIINFO* info) override;
    HRESULT STDMETHODCALLTYPE ShowUI(DWORD, IOleInPlaceActiveObject*, IOleCommandTarget*, IOleInPlaceFrame*,
                                     IOleInPlaceUIWindow*) override {
        return S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE HideUI() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE UpdateUI() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG message, const GUID* group, DWORD command) override;
    HRESULT STDMETHODCALLTYPE GetOptionKeyPath(LPOLESTR* path, DWORD) override { return None(path, S_FALSE); }
    HRESULT STDMETHODCALLTYPE GetDropTarget(IDropTarget*, IDropTarget** target) override {
        return None(target, E_NOTIMPL);
    }
    HRESULT STDMETHODCALLTYPE GetExternal(IDispatch** external) override { return None(external, S_FALSE); }
    HRESULT STDMETHODCALLTYPE TranslateUrl(DWORD, LPWSTR, LPWSTR* url) override { return None(url, S_FALSE); }
    HRESULT STDMETHODCALLTYPE FilterDataObject(IDataObject*, IDataObject** object) override {
        return None(object, S_FALSE);
    }

    // IDocHostShowUI
    HRESULT STDMETHODCALLTYPE ShowMessage(HWND, LPOLESTR, LPOLESTR, DWORD type, LPOLESTR, DWORD,
                                          LRESULT* answer) override;
    HRESULT STDMETHODCALLTYPE ShowHelp(HWND, LPOLESTR, UINT, DWORD, POINT, IDispatch*) override { return S_OK; }

    // IOleCommandTarget
    HRESULT STDMETHODCALLTYPE QueryStatus(const GUID* group, ULONG count, OLECMD commands[], OLECMDTEXT*) override;
    HRESULT STDMETHODCALLTYPE Exec(const GUID* group, DWORD command, DWORD, VARIANT*, VARIANT* result) override;

    // IServiceProvider
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID wanted, void** found) override;

    // IDispatch: the surroundings of the control
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override { return None(info, E_NOTIMPL); }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                     UINT*) override;

private:
    template <typename Thing>
    static HRESULT None(Thing** place, HRESULT answer) {
        if (!place)
            return E_POINTER;
        *place = nullptr;
        return answer;
    }

    ComPointer<IeLogin> login_ = ComPointer<IeLogin>::Adopt(new IeLogin);
    QString userAgent_;
};

} // namespace Brindle
