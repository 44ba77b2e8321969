#pragma once

#include "browser/ie/ComObject.h"
#include "browser/ie/ComPointer.h"
#include "browser/ie/IePageHost.h"

#include <functional>
#include <ocidl.h>
#include <oleidl.h>

namespace Brindle {

/// The place of a control in a window: its container, and the frame around it.
class IeSite final : public ComObject<IOleClientSite, IOleInPlaceSite, IOleInPlaceFrame, IOleControlSite> {
public:
    IeSite();
    ~IeSite() override;

    /// Shows a control in a window, as large as the window's inside. False when it cannot be shown there.
    bool Activate(IOleObject& control, HWND window);
    /// Takes the control from its window.
    void Deactivate();
    HWND Window() const { return window_; }
    /// The window has another size.
    void FollowWindow();
    /// The control is to take the keyboard.
    void TakeFocus();
    /// A key pressed within the control. True when the control has used it.
    bool TakeKey(MSG& message);

    IePageHost& Pages() { return pages_; }

    /// Told when the tabulator leaves the control, forward or backward.
    std::function<void(bool forward)> FocusLeaves;

    // IOleClientSite
    HRESULT STDMETHODCALLTYPE SaveObject() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker** moniker) override;
    HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** container) override;
    HRESULT STDMETHODCALLTYPE ShowObject() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }

    // IOleInPlaceSite and IOleInPlaceFrame
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnUIActivate() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, LPRECT place,
                                               LPRECT clip, LPOLEINPLACEFRAMEINFO info) override;
    HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return S_FALSE; }
    HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT) override;
    HRESULT STDMETHODCALLTYPE GetBorder(LPRECT) override { return INPLACE_E_NOTOOLSPACE; }
    HRESULT STDMETHODCALLTYPE RequestBorderSpace(LPCBORDERWIDTHS) override { return INPLACE_E_NOTOOLSPACE; }
    HRESULT STDMETHODCALLTYPE SetBorderSpace(LPCBORDERWIDTHS) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject* active, LPCOLESTR) override;
    HRESULT STDMETHODCALLTYPE InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetStatusText(LPCOLESTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

    // IOleControlSite
    HRESULT STDMETHODCALLTYPE OnControlInfoChanged() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE LockInPlaceActive(BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetExtendedControl(IDispatch** control) override;
    HRESULT STDMETHODCALLTYPE TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* message, DWORD modifiers) override;
    HRESULT STDMETHODCALLTYPE OnFocus(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ShowPropertyFrame() override { return E_NOTIMPL; }

protected:
    bool FindMore(REFIID wanted, void** found) override;

private:
    RECT Inside() const;

    IePageHost pages_;
    HWND window_ = nullptr;
    ComPointer<IOleObject> control_;
    ComPointer<IOleInPlaceActiveObject> active_;
};

} // namespace Brindle
