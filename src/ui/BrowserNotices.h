#pragma once

#include "core/EmbeddedBrowser.h"
#include "i18n/WindowTexts.h"
#include "ui/NoticeBar.h"

namespace Brindle {

/// Says in a bar above the page what the browser could not do: an address that failed, a page whose process died, a
/// download, a text in the address box that is no address.
class BrowserNotices : public QObject {
public:
    BrowserNotices(EmbeddedBrowser& browser, NoticeBar& bar, const WindowTexts& texts);

    /// Whether a text of the address box can be loaded; says so where it is none.
    bool TakesAddress(const QString& typed);

private:
    void NavigateComplete();
    void Say(const QString& text);

    EmbeddedBrowser& browser_;
    NoticeBar& bar_;
    const WindowTexts& texts_;
    QString saidAt_; // the page that was shown when the notice came up; it goes when another one comes
    bool failure_ = false;
};

} // namespace Brindle
