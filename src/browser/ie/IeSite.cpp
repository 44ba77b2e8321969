#include "browser/ie/IeSite.h"

namespace Brindle {

IeSite::IeSite() : pages_(*static_cast<IOleClientSite*>(this)) {}

IeSite::~IeSite() = default;

bool IeSite::Activate(IOleObject& control, HWND window) {
    Deactivate();
    window_ = window;
    control_ = ComPointer<IOleObject>(&control);
    const RECT inside = Inside();
    if (FAILED(control.DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, this, 0, window, &inside))) {
        Deactivate();
        return false;
    }
    FollowWindow();
    return true;
}

void IeSite::Deactivate() {
    if (const auto inPlace = control_.As<IOleInPlaceObject>())
        inPlace->InPlaceDeactivate();
    active_.Reset();
    control_.Reset();
    window_ = nullptr;
}

void IeSite::FollowWindow() {
    const RECT inside = Inside();
    if (const auto inPlace = control_.As<IOleInPlaceObject>())
        inPlace->SetObjectRects(&inside, &inside);
}

void IeSite::TakeFocus() {
    const RECT inside = Inside();
    if (const ComPointer<IOleObject> control = control_)
        control->DoVerb(OLEIVERB_UIACTIVATE, nullptr, this, 0, window_, &inside);
}

bool IeSite::TakeKey(MSG& message) {
    const ComPointer<IOleInPlaceActiveObject> active = active_ ? active_ : control_.As<IOleInPlaceActiveObject>();
    return active && IsChild(window_, message.hwnd) && active->TranslateAccelerator(&message) == S_OK;
}

HRESULT IeSite::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
    if (moniker)
        *moniker = nullptr;
    return E_NOTIMPL;
}

HRESULT IeSite::GetContainer(IOleContainer** container) {
    if (container)
        *container = nullptr;
    return E_NOINTERFACE;
}

HRESULT IeSite::GetWindow(HWND* window) {
    if (!window)
        return E_POINTER;
    *window = window_;
    return window_ ? S_OK : E_FAIL;
}

HRESULT IeSite::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, LPRECT place, LPRECT clip,
                                 LPOLEINPLACEFRAMEINFO info) {
    if (!frame || !document || !place || !clip || !info)
        return E_POINTER;
    *frame = this;
    AddRef();
    *document = nullptr;
    *place = *clip = Inside();
    info->fMDIApp = FALSE;
    info->hwndFrame = GetAncestor(window_, GA_ROOT);
    info->haccel = nullptr;
    info->cAccelEntries = 0;
    return S_OK;
}

// The control may not choose its size.
HRESULT IeSite::OnPosRectChange(LPCRECT) {
    FollowWindow();
    return S_OK;
}

HRESULT IeSite::SetActiveObject(IOleInPlaceActiveObject* active, LPCOLESTR) {
    active_ = ComPointer<IOleInPlaceActiveObject>(active);
    return S_OK;
}

HRESULT IeSite::GetExtendedControl(IDispatch** control) {
    if (control)
        *control = nullptr;
    return E_NOTIMPL;
}

HRESULT IeSite::TranslateAccelerator(MSG* message, DWORD) {
    if (!message || message->message != WM_KEYDOWN || message->wParam != VK_TAB || !FocusLeaves)
        return S_FALSE;
    FocusLeaves(GetKeyState(VK_SHIFT) >= 0);
    return S_OK;
}

bool IeSite::FindMore(REFIID wanted, void** found) {
    return FindInterface<IOleWindow>(static_cast<IOleInPlaceSite*>(this), wanted, found) ||
           FindInterface<IOleInPlaceUIWindow>(static_cast<IOleInPlaceFrame*>(this), wanted, found) ||
           pages_.Find(wanted, found);
}

RECT IeSite::Inside() const {
    RECT inside{};
    if (window_)
        GetClientRect(window_, &inside);
    return inside;
}

} // namespace Brindle
