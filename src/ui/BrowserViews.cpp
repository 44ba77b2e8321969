#include "ui/BrowserViews.h"

#include "browser/StaticBrowser.h"

#ifdef BRINDLE_HAS_WEBENGINE
#include "browser/webengine/WebEngineBrowser.h"
#endif
#ifdef BRINDLE_HAS_IE
#include "browser/ie/IeBrowser.h"
#endif

#include <QPointer>

namespace Brindle {

namespace {

// Laying out a text of megabytes takes seconds, and the harvest does not read it from here.
constexpr qsizetype longestShownPage = 300'000;

} // namespace

StaticPageView::StaticPageView(EmbeddedBrowser& browser) {
    setOpenLinks(false);
    connect(&browser, &EmbeddedBrowser::NavigateComplete, this, [this, &browser](const QString& address) {
        setHtml(browser.BodyOuterHtml(MarkupForm::Standard).left(longestShownPage));
        document()->setBaseUrl(QUrl(address));
        if (toPlainText().isEmpty() && !browser.LastError().isEmpty())
            setPlainText(browser.LastError());
    });
    connect(this, &QTextBrowser::anchorClicked, this, [&browser](const QUrl& link) {
        const QUrl target = QUrl(browser.LocationAddress()).resolved(link);
        if (target.scheme() == u"http" || target.scheme() == u"https")
            browser.Navigate(target.toString(QUrl::FullyEncoded));
    });
}

ShownBrowser CreateStaticBrowser(MessageLoop&, const QString&) {
    auto browser = std::make_unique<StaticBrowser>();
    auto* const view = new StaticPageView(*browser);
    return {std::move(browser), view};
}

#ifdef BRINDLE_HAS_WEBENGINE
ShownBrowser CreateWebEngineBrowser(MessageLoop& loop, const QString& profileFolder) {
    auto browser = std::make_unique<WebEngineBrowser>(loop, profileFolder);
    QWidget* const view = browser->Widget();
    return {std::move(browser), view};
}
#endif

#ifdef BRINDLE_HAS_IE
bool SystemHasPageEngine() {
    return IeControl::PageEngineInstalled();
}

ShownBrowser CreateIeBrowser(MessageLoop&, const QString&) {
    auto browser = std::make_unique<IeBrowser>();
    QWidget* const view = browser->Widget();
    return {std::move(browser), view};
}
#endif

} // namespace Brindle
