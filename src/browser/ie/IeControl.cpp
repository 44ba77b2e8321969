#include "browser/ie/IeControl.h"

#include <mshtmdid.h>

namespace Brindle {

std::unique_ptr<IeControl> IeControl::Create(IeListener& listener) {
    std::unique_ptr<IeControl> made(new IeControl);
    if (FAILED(CoCreateInstance(CLSID_WebBrowser, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IWebBrowser2),
                                made->browser_.OutVoid())))
        return nullptr;
    made->object_ = made->browser_.As<IOleObject>();
    made->site_ = ComPointer<IeSite>::Adopt(new IeSite);
    made->events_ = ComPointer<IeEvents>::Adopt(new IeEvents(listener));
    if (!made->object_ || FAILED(made->object_->SetClientSite(made->site_.Get())) ||
        !made->events_->Connect(*made->browser_.Get()))
        return nullptr;
    made->browser_->put_Silent(VARIANT_TRUE);
    made->browser_->put_RegisterAsDropTarget(VARIANT_FALSE);
    return made;
}

IeControl::~IeControl() {
    if (events_)
        events_->Disconnect();
    if (site_) {
        site_->FocusLeaves = nullptr;
        site_->Deactivate();
    }
    if (object_) {
        object_->Close(OLECLOSE_NOSAVE);
        object_->SetClientSite(nullptr);
    }
}

bool IeControl::PageEngineInstalled() {
    // {25336920-03f9-11cf-8fd0-00aa00686f13}: the document of a page.
    constexpr GUID htmlDocument{0x25336920, 0x03f9, 0x11cf, {0x8f, 0xd0, 0x00, 0xaa, 0x00, 0x68, 0x6f, 0x13}};
    const OleScope ole;
    ComPointer<IUnknown> factory;
    return SUCCEEDED(
        CoGetClassObject(htmlDocument, CLSCTX_INPROC_SERVER, nullptr, __uuidof(IUnknown), factory.OutVoid()));
}

bool IeControl::Show(HWND window) {
    return IsWindow(window) && site_->Activate(*object_.Get(), window);
}

bool IeControl::Navigate(const QString& address) {
    const ComText text(address);
    ComValue none;
    return SUCCEEDED(browser_->Navigate(text.Get(), none.Get(), none.Get(), none.Get(), none.Get()));
}

bool IeControl::Busy() const {
    VARIANT_BOOL busy = VARIANT_FALSE;
    return SUCCEEDED(browser_->get_Busy(&busy)) && busy != VARIANT_FALSE;
}

QString IeControl::LocationAddress() const {
    ComText address;
    return SUCCEEDED(browser_->get_LocationURL(address.Out())) ? address.Text() : QString();
}

IeDocument IeControl::Document() const {
    ComPointer<IDispatch> document;
    if (FAILED(browser_->get_Document(document.Out())))
        document = {};
    return IeDocument(std::move(document));
}

void IeControl::SetUserAgent(const QString& userAgent) {
    site_->Pages().SetUserAgent(userAgent);
    if (const auto control = browser_.As<IOleControl>())
        control->OnAmbientPropertyChange(DISPID_AMBIENT_USERAGENT);
}

} // namespace Brindle
