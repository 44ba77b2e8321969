#pragma once

#include "browser/ie/IeDocument.h"
#include "browser/ie/IeEvents.h"
#include "browser/ie/IeSite.h"

#include <memory>

namespace Brindle {

/// While one of these lives, its thread may use COM and OLE.
class OleScope {
public:
    OleScope() : entered_(SUCCEEDED(OleInitialize(nullptr))) {}
    ~OleScope() {
        if (entered_)
            OleUninitialize();
    }
    OleScope(const OleScope&) = delete;
    OleScope& operator=(const OleScope&) = delete;

private:
    bool entered_;
};

/// One web browser control of the system, silent, with its place and its events. Needs an `OleScope`. A call that fails
/// does nothing, or gives the empty text or false.
class IeControl {
public:
    /// Makes a control that tells a listener of its events; none when the system has no such control.
    static std::unique_ptr<IeControl> Create(IeListener& listener);
    ~IeControl();
    IeControl(const IeControl&) = delete;
    IeControl& operator=(const IeControl&) = delete;

    /// Whether the system has the engine that turns pages into documents. The control comes up without it too.
    static bool PageEngineInstalled();

    /// Shows the control in a window of this process; false when it cannot be.
    bool Show(HWND window);
    IeSite& Site() { return *site_.Get(); }

    /// False when the control does not even begin.
    bool Navigate(const QString& address);
    void Stop() { browser_->Stop(); }
    void Refresh() { browser_->Refresh(); }
    void GoBack() { browser_->GoBack(); }
    void GoForward() { browser_->GoForward(); }
    bool Busy() const;
    QString LocationAddress() const;
    IeDocument Document() const;

    /// Tells the pages' engine another user agent; empty: what the system says.
    void SetUserAgent(const QString& userAgent);

private:
    IeControl() = default;

    ComPointer<IWebBrowser2> browser_;
    ComPointer<IOleObject> object_;
    ComPointer<IeSite> site_;
    ComPointer<IeEvents> events_;
};

} // namespace Brindle
