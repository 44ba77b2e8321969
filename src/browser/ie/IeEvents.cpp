#include "browser/ie/IeEvents.h"

#include <exdispid.h>
#include <ocidl.h>
#include <shobjidl.h>

namespace Brindle {

// The arguments of an event in the order in which they are documented; they arrive in reverse.
class IeEvents::Arguments {
public:
    explicit Arguments(const DISPPARAMS& arguments) : arguments_(arguments) {}

    QString Text(UINT place) const {
        const VARIANT* const argument = At(place);
        return argument ? ComValue::TextOf(*argument) : QString();
    }
    qint32 Number(UINT place) const {
        const VARIANT* const argument = At(place);
        return argument ? ComValue::NumberOf(*argument) : 0;
    }
    bool IsTrue(UINT place) const { return Number(place) != 0; }
    IUnknown* Object(UINT place) const {
        const VARIANT* const argument = At(place);
        return argument && (argument->vt == VT_DISPATCH || argument->vt == VT_UNKNOWN) ? argument->punkVal : nullptr;
    }
    // Tells the control not to go on.
    void Cancel(UINT place) const {
        const VARIANT* const argument = At(place);
        if (argument && argument->vt == (VT_BYREF | VT_BOOL) && argument->pboolVal)
            *argument->pboolVal = VARIANT_TRUE;
    }

private:
    const VARIANT* At(UINT place) const {
        return place < arguments_.cArgs ? &arguments_.rgvarg[arguments_.cArgs - 1 - place] : nullptr;
    }

    const DISPPARAMS& arguments_;
};

bool IeEvents::Connect(IUnknown& control) {
    Disconnect();
    const ComPointer<IUnknown> object(&control);
    const auto container = object.As<IConnectionPointContainer>();
    if (!container || FAILED(container->FindConnectionPoint(DIID_DWebBrowserEvents2, point_.Out())))
        return false;
    if (FAILED(point_->Advise(this, &cookie_))) {
        point_.Reset();
        return false;
    }
    control_ = object.As<IUnknown>();
    return true;
}

void IeEvents::Disconnect() {
    if (point_)
        point_->Unadvise(cookie_);
    point_.Reset();
    control_.Reset();
}

HRESULT IeEvents::GetTypeInfoCount(UINT* count) {
    if (!count)
        return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT IeEvents::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info)
        *info = nullptr;
    return E_NOTIMPL;
}

HRESULT IeEvents::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*, UINT*) {
    if (!params)
        return E_POINTER;
    const Arguments arguments(*params);
    switch (id) {
    case DISPID_BEFORENAVIGATE2:
        listener_->NavigationBegins(arguments.Text(1), IsWholePage(arguments));
        return S_OK;
    case DISPID_NAVIGATECOMPLETE2:
        listener_->NavigationShows(arguments.Text(1), IsWholePage(arguments));
        return S_OK;
    case DISPID_DOCUMENTCOMPLETE:
        listener_->DocumentLoaded(arguments.Text(1), IsWholePage(arguments));
        return S_OK;
    case DISPID_NAVIGATEERROR:
        listener_->NavigationFails(arguments.Text(1), arguments.Number(3), IsWholePage(arguments));
        return S_OK;
    case DISPID_PROGRESSCHANGE:
        listener_->Progress(arguments.Number(0), arguments.Number(1));
        return S_OK;
    case DISPID_FILEDOWNLOAD:
        if (!arguments.IsTrue(0)) { // it is told of pages too
            arguments.Cancel(1);
            listener_->FileRefused();
        }
        return S_OK;
    case DISPID_NEWWINDOW3:
        arguments.Cancel(1);
        listener_->WindowWanted(arguments.Text(4), (arguments.Number(2) & (NWMF_USERINITED | NWMF_USERREQUESTED)) != 0);
        return S_OK;
    case DISPID_NEWWINDOW2: // comes without an address, after the one with it
    case DISPID_WINDOWCLOSING:
        arguments.Cancel(1);
        return S_OK;
    default:
        return DISP_E_MEMBERNOTFOUND;
    }
}

bool IeEvents::FindMore(REFIID wanted, void** found) {
    return FindInterface<IDispatch>(this, wanted, found);
}

bool IeEvents::IsWholePage(const Arguments& arguments) const {
    const ComPointer<IUnknown> browser(arguments.Object(0));
    return browser && browser.As<IUnknown>().Get() == control_.Get();
}

} // namespace Brindle
