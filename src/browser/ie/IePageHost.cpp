#include "browser/ie/IePageHost.h"

#include <idispids.h>
#include <mshtmdid.h>
#include <olectl.h>

namespace Brindle {

namespace {

// {f38bc242-b950-11d1-8918-00c04fc2c836}: the commands that a page's engine hands to its host. Import libraries differ
// in whether they have it.
constexpr GUID docHostCommands{0xf38bc242, 0xb950, 0x11d1, {0x89, 0x18, 0x00, 0xc0, 0x4f, 0xc2, 0xc8, 0x36}};

void Put(VARIANT* result, bool value) {
    result->vt = VT_BOOL;
    result->boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
}

} // namespace

IePageHost::IePageHost(IUnknown& whole) : ComPart(whole) {}

HRESULT IePageHost::GetHostInfo(DOCHOSTUIINFO* info) {
    if (!info)
        return E_POINTER;
    info->dwFlags = DOCHOSTUIFLAG_NO3DBORDER | DOCHOSTUIFLAG_THEME | DOCHOSTUIFLAG_DPI_AWARE;
    info->dwDoubleClick = DOCHOSTUIDBLCLK_DEFAULT;
    return S_OK;
}

// What would bring up a window of the system's own browser, or its box for an address.
HRESULT IePageHost::TranslateAccelerator(LPMSG message, const GUID*, DWORD) {
    const bool control = GetKeyState(VK_CONTROL) < 0;
    const bool opens = message && control && message->message == WM_KEYDOWN &&
                       (message->wParam == 'N' || message->wParam == 'O' || message->wParam == 'L');
    return opens ? S_OK : S_FALSE;
}

// Among the questions are whether a page may be left and whether a script that does not end is to be stopped: yes.
HRESULT IePageHost::ShowMessage(HWND, LPOLESTR, LPOLESTR, DWORD type, LPOLESTR, DWORD, LRESULT* answer) {
    if (!answer)
        return E_POINTER;
    switch (type & MB_TYPEMASK) {
    case MB_YESNO:
    case MB_YESNOCANCEL:
        *answer = IDYES;
        break;
    case MB_ABORTRETRYIGNORE:
        *answer = IDABORT;
        break;
    case MB_RETRYCANCEL:
        *answer = IDCANCEL;
        break;
    default:
        *answer = IDOK;
    }
    return S_OK;
}

HRESULT IePageHost::QueryStatus(const GUID* group, ULONG count, OLECMD commands[], OLECMDTEXT*) {
    if (!group || *group != docHostCommands)
        return OLECMDERR_E_UNKNOWNGROUP;
    if (!commands)
        return E_POINTER;
    for (ULONG at = 0; at < count; ++at)
        commands[at].cmdf = commands[at].cmdID == OLECMDID_SHOWSCRIPTERROR ? OLECMDF_SUPPORTED | OLECMDF_ENABLED : 0;
    return S_OK;
}

HRESULT IePageHost::Exec(const GUID* group, DWORD command, DWORD, VARIANT*, VARIANT* result) {
    if (!group || *group != docHostCommands)
        return OLECMDERR_E_UNKNOWNGROUP;
    if (command != OLECMDID_SHOWSCRIPTERROR)
        return OLECMDERR_E_NOTSUPPORTED;
    if (result)
        Put(result, true); // the page's other scripts run on
    return S_OK;
}

HRESULT IePageHost::QueryService(REFGUID service, REFIID wanted, void** found) {
    if (!found)
        return E_POINTER;
    *found = nullptr;
    if (service == __uuidof(IAuthenticate) || service == __uuidof(IAuthenticateEx))
        return login_->QueryInterface(wanted, found);
    return E_NOINTERFACE;
}

HRESULT IePageHost::GetTypeInfoCount(UINT* count) {
    if (!count)
        return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT IePageHost::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) {
    if (!result)
        return E_POINTER;
    VariantInit(result);
    switch (id) {
    case DISPID_AMBIENT_USERMODE:
    case DISPID_AMBIENT_SILENT:
        Put(result, true);
        return S_OK;
    case DISPID_AMBIENT_OFFLINEIFNOTCONNECTED:
        Put(result, false);
        return S_OK;
    case DISPID_AMBIENT_DLCONTROL:
        // Pictures and scripts; no sound, no films, no controls that want to be installed.
        result->vt = VT_I4;
        result->lVal = DLCTL_DLIMAGES | DLCTL_NO_DLACTIVEXCTLS | DLCTL_SILENT;
        return S_OK;
    case DISPID_AMBIENT_USERAGENT:
        if (userAgent_.isEmpty())
            return DISP_E_MEMBERNOTFOUND;
        result->vt = VT_BSTR;
        result->bstrVal = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(userAgent_.utf16()),
                                            static_cast<UINT>(userAgent_.size()));
        return S_OK;
    default:
        return DISP_E_MEMBERNOTFOUND;
    }
}

} // namespace Brindle
