#include "ui/BrowserNotices.h"

#include "toolkit/PageAddress.h"

#include <QUrl>

namespace Brindle {

BrowserNotices::BrowserNotices(EmbeddedBrowser& browser, NoticeBar& bar, const WindowTexts& texts)
    : browser_(browser), bar_(bar), texts_(texts) {
    connect(&browser, &EmbeddedBrowser::NavigateComplete, this, &BrowserNotices::NavigateComplete);
    connect(&browser, &EmbeddedBrowser::DownloadRefused, this,
            [this](const QString& address) { Say(texts_.With(WindowText::DownloadRefused, {address})); });
    connect(&bar, &NoticeBar::ActionClicked, this, [this] {
        bar_.hide();
        browser_.Refresh();
    });
}

bool BrowserNotices::TakesAddress(const QString& typed) {
    const QUrl address(TypedAddress(typed));
    const bool ofAHost = address.scheme() == u"http" || address.scheme() == u"https";
    if (address.isValid() && !address.isEmpty() && (!ofAHost || !address.host().isEmpty()))
        return true;
    Say(texts_.With(WindowText::NoAddress, {typed}));
    return false;
}

void BrowserNotices::NavigateComplete() {
    const QString error = browser_.LastError();
    if (!error.isEmpty()) {
        failure_ = true;
        bar_.Say(error, texts_.Text(WindowText::Reload));
    } else if (failure_ || browser_.LocationAddress() != saidAt_) {
        bar_.hide();
    }
}

void BrowserNotices::Say(const QString& text) {
    failure_ = false;
    saidAt_ = browser_.LocationAddress();
    bar_.Say(text);
}

} // namespace Brindle
