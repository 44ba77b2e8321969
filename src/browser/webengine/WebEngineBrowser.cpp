#include "browser/webengine/WebEngineBrowser.h"

#include "browser/webengine/WebEnginePage.h"
#include "browser/webengine/WebEnginePointing.h"
#include "page/MarkupFormText.h"
#include "toolkit/PageAddress.h"

#include <QAction>
#include <QElapsedTimer>
#include <QTcpServer>
#include <QTimer>
#include <QWebEngineDownloadRequest>
#include <QWebEngineHistory>
#include <QWebEngineLoadingInfo>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineSettings>
#include <QWebEngineView>

#include <utility>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <signal.h>
#endif

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// The scripts run in a world of their own, so a page can neither see nor change what they use. A document that is
// being left carries a mark, which goes with it.
constexpr quint32 world = QWebEngineScript::ApplicationWorld;
constexpr qint64 mostWaitForMore = 4000; // ms
constexpr int proxyPatience = 1000;      // ms
constexpr int lostAfter = 400;           // ms

// A page beyond the size of what is parsed elsewhere is not read here either.
constexpr auto readElement = u"(() => { const element = document.%1; if (window.brindleLeft || !element) return '';"
                             u" const html = element.outerHTML; return html.length > 67108864 ? '' : html; })()";
constexpr auto readLinks = u"window.brindleLeft ? [] : Array.from(document.links, link => link.innerText)";
constexpr auto leave = u"window.brindleLeft = true";
constexpr auto stay = u"window.brindleLeft = false";

// Clicks a link. Where the click will bring up another page in this view, the document counts as left from now on.
constexpr auto click = uR"((index => {
    const link = document.links[index];
    if (!link) return;
    let taken = false;
    const follow = event => { taken = !event.defaultPrevented; };
    window.addEventListener('click', follow);
    link.click();
    window.removeEventListener('click', follow);
    const here = location.href.split('#')[0];
    const away = /^https?:$/.test(link.protocol) && (link.href.split('#')[0] !== here || !link.hash);
    const inThisView = ['', '_self', '_top', '_parent'].includes(link.target) && !link.hasAttribute('download');
    if (taken && away && inThisView) window.brindleLeft = true;
})(%1))";

constexpr auto countElements = u"window.brindleLeft ? 0 : document.getElementsByTagName('*').length";

// Clicks the button that brings more of a list: the one that is named, or one that says so; then scrolls to the end, as
// a reader would. Links to other pages are no such buttons.
constexpr auto askForMore = uR"((selector => {
    const words = ['load more', 'show more', 'view more', 'see more', 'more results', 'load more results',
        'show more results', 'mehr laden', 'mehr anzeigen', 'mehr ergebnisse', 'weitere ergebnisse', 'weitere anzeigen',
        'voir plus', 'afficher plus', 'charger plus', 'plus de résultats', 'ver más', 'cargar más', 'mostrar más',
        'más resultados', 'mostra altri', 'carica altri', 'mostra di più', 'altri risultati', 'ver mais',
        'carregar mais', 'mostrar mais', 'meer laden', 'toon meer', 'meer resultaten', 'pokaż więcej', 'wczytaj więcej',
        'zobacz więcej', 'visa fler', 'ladda fler', 'vis mere', 'vis flere', 'näytä lisää', 'načíst další',
        'zobrazit více', 'показать ещё', 'показать еще', 'загрузить ещё', 'daha fazla', 'もっと見る', 'さらに表示',
        '加载更多', '查看更多', '더보기', '더 보기'];
    const says = element => words.includes((element.innerText || element.value || '').toLowerCase()
        .replace(/[0-9()\[\]…»›>.+↓▼]/g, ' ').replace(/\s+/g, ' ').trim());
    const stays = element => !element.href || element.getAttribute('href').startsWith('#');
    let button = null;
    try {
        button = selector ? document.querySelector(selector) : null;
    } catch (error) {}
    if (!button)
        button = Array.from(document.querySelectorAll('button, [role=button], input[type=button], a'))
            .find(element => stays(element) && says(element)) || null;
    if (button && !button.disabled) button.click();
    window.scrollTo(0, 0);
    window.scrollTo(0, document.documentElement.scrollHeight);
    window.dispatchEvent(new Event('scroll'));
})(%1))";

// Whether two addresses are of the same page; an address that is only a host's has no path before it is asked for.
bool IsSamePage(QUrl a, QUrl b) {
    for (QUrl* const url : {&a, &b})
        if (url->path().isEmpty() && !url->host().isEmpty())
            url->setPath(u"/"_s);
    return a.matches(b, QUrl::RemoveFragment | QUrl::NormalizePathSegments);
}

void Kill(qint64 process) {
#ifdef Q_OS_WIN
    if (const HANDLE handle = OpenProcess(PROCESS_TERMINATE, FALSE, static_cast<DWORD>(process))) {
        TerminateProcess(handle, 1);
        CloseHandle(handle);
    }
#else
    kill(static_cast<pid_t>(process), SIGKILL);
#endif
}

// The engine remarks on its graphics when it starts without a display; there is nothing that a user could do about it.
class QuietStart {
public:
    QuietStart() : before_(qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {})) {}
    ~QuietStart() { qInstallMessageHandler(before_); }
    QuietStart(const QuietStart&) = delete;
    QuietStart& operator=(const QuietStart&) = delete;

private:
    QtMessageHandler before_;
};

std::unique_ptr<QWebEngineProfile> MadeProfile(const QString& folder) {
    const QuietStart quiet;
    if (folder.isEmpty())
        return std::make_unique<QWebEngineProfile>();
    auto profile = std::make_unique<QWebEngineProfile>(u"brindle"_s);
    profile->setPersistentStoragePath(folder);
    profile->setCachePath(folder + u"/cache"_s);
    profile->setPersistentCookiesPolicy(QWebEngineProfile::AllowPersistentCookies);
    return profile;
}

} // namespace

WebEngineBrowser::WebEngineBrowser(MessageLoop& loop, const QString& profileFolder)
    : loop_(loop), profile_(MadeProfile(profileFolder)) {
    defaultUserAgent_ = profile_->httpUserAgent();
    connect(profile_.get(), &QWebEngineProfile::downloadRequested, this, [this](QWebEngineDownloadRequest* download) {
        download->cancel();
        Tell([this, address = download->url().toString()] { Q_EMIT DownloadRefused(address); });
    });

    page_ = std::make_unique<WebEnginePage>(profile_.get());
    page_->settings()->setAttribute(QWebEngineSettings::PluginsEnabled, false);
    page_->settings()->setAttribute(QWebEngineSettings::PdfViewerEnabled, false);
    connect(page_.get(), &QWebEnginePage::loadingChanged, this, &WebEngineBrowser::OnLoadingChanged);
    connect(page_.get(), &QWebEnginePage::renderProcessTerminated, this, &WebEngineBrowser::OnRendererGone);
    connect(page_.get(), &QWebEnginePage::loadProgress, this,
            [this](int percent) { Tell([this, percent] { Q_EMIT ProgressChange(percent, 100); }); });
    connect(page_.get(), &QWebEnginePage::urlChanged, this, [this] {
        ++changes_;
        // A script has changed the address without loading anything.
        if (!busy_)
            Tell([this] { Q_EMIT NavigateComplete(LocationAddress()); });
    });

    view_ = new QWebEngineView;
    view_->setPage(page_.get());
    for (const auto action : {QWebEnginePage::ViewSource, QWebEnginePage::SavePage, QWebEnginePage::OpenLinkInNewTab,
                              QWebEnginePage::OpenLinkInNewWindow, QWebEnginePage::DownloadLinkToDisk,
                              QWebEnginePage::DownloadImageToDisk, QWebEnginePage::DownloadMediaToDisk})
        view_->pageAction(action)->setVisible(false);
    pointing_ = std::make_unique<WebEnginePointing>(*page_, [this](const QString& script) {
        return Evaluate(script, Asked::AgainWhenThePageChanges).value_or(QVariant());
    });
}

WebEngineBrowser::~WebEngineBrowser() {
    page_->disconnect(this);
    proxyPage_.reset();
    pointing_.reset();
    if (const qint64 process = hung_ ? page_->renderProcessPid() : 0; process > 0)
        Kill(process);
    if (view_) {
        view_->setPage(nullptr);
        if (!view_->parent())
            delete view_;
    }
    page_.reset();
}

QWidget* WebEngineBrowser::Widget() const {
    return view_;
}

PagePointing* WebEngineBrowser::Pointing() {
    return pointing_.get();
}

void WebEngineBrowser::Navigate(const QString& address) {
    const QUrl url(TypedAddress(address));
    if (!url.isValid()) {
        lastError_ = address + u": not an address"_s;
        return;
    }
    Load(url, [this, url] {
        page_->GuardFor({});
        page_->load(url);
    });
}

void WebEngineBrowser::Follow(const QString& address) {
    const QUrl url(address);
    if (!url.isValid() || (url.scheme() != u"http"_s && url.scheme() != u"https"_s)) {
        lastError_ = address + u": not an http or https address"_s;
        return;
    }
    if (const QString refusal = page_->RefusalOf(lastPage_, url); !refusal.isEmpty()) {
        lastError_ = refusal;
        return;
    }
    Load(url, [this, url] {
        page_->GuardFor(lastPage_);
        page_->load(url);
    });
}

void WebEngineBrowser::Stop() {
    afterProxy_ = {};
    overtaking_ = {};
    page_->triggerAction(QWebEnginePage::Stop);
    page_->runJavaScript(QString::fromUtf16(stay), world);
    if (busy_ && !loading_ && !afterEnd_) // nothing has begun that could end
        EndBusy();
}

void WebEngineBrowser::Refresh() {
    Load(page_->url(), [this] { page_->triggerAction(QWebEnginePage::Reload); });
}

void WebEngineBrowser::GoBack() {
    GoBy(-1);
}

void WebEngineBrowser::GoForward() {
    GoBy(1);
}

QString WebEngineBrowser::LocationAddress() const {
    return page_->url().toString(QUrl::FullyEncoded);
}

QString WebEngineBrowser::BodyOuterHtml(MarkupForm form) {
    return InMarkupForm(OuterHtmlOf(u"body"), form);
}

QString WebEngineBrowser::DocumentHtml() {
    return OuterHtmlOf(u"documentElement");
}

QString WebEngineBrowser::OuterHtmlOf(QStringView element) {
    const std::optional<QVariant> html =
        Evaluate(QString::fromUtf16(readElement).arg(element), Asked::AgainWhenThePageChanges);
    return html ? html->toString() : QString();
}

int WebEngineBrowser::LinkCount() {
    const QPointer<WebEngineBrowser> self(this);
    const std::optional<QVariant> texts = Evaluate(QString::fromUtf16(readLinks), Asked::AgainWhenThePageChanges);
    if (!self)
        return 0; // the program has ended meanwhile
    linkTexts_ = texts ? texts->toStringList() : QStringList();
    return static_cast<int>(linkTexts_->size());
}

QString WebEngineBrowser::LinkInnerText(int index) {
    if (!linkTexts_ && LinkCount() == 0)
        return {};
    return linkTexts_->value(index);
}

void WebEngineBrowser::ClickLink(int index) {
    if (index < 0)
        return;
    page_->BeginClick();
    const QPointer<WebEngineBrowser> self(this);
    Evaluate(QString::fromUtf16(click).arg(index), Asked::Once);
    if (self)
        page_->EndClick();
}

bool WebEngineBrowser::LoadMore(const QString& selector) {
    const QPointer<WebEngineBrowser> self(this);
    const auto elements = [this] {
        const std::optional<QVariant> count = Evaluate(QString::fromUtf16(countElements), Asked::Once);
        return count ? count->toInt() : 0;
    };
    const int before = elements();
    if (!self || before == 0)
        return false;
    QString named = selector;
    named.replace(u'\\', u"\\\\"_s).replace(u'\'', u"\\'"_s).replace(u'\n', u' ');
    Evaluate(QString::fromUtf16(askForMore).arg(u'\'' + named + u'\''), Asked::Once);
    QElapsedTimer waited;
    waited.start();
    while (self && !loop_.Quitting() && waited.elapsed() < mostWaitForMore) {
        loop_.WaitForMessage(100);
        if (self && !loop_.Quitting() && elements() > before)
            return true;
    }
    return false;
}

void WebEngineBrowser::SetProxy(const Proxy& proxy) {
    page_->SetProxyLogin(proxy);
    proxyError_.clear();
    QNetworkProxy way(QNetworkProxy::NoProxy);
    if (proxy.Host.isEmpty()) {
        // none
    } else if (proxy.Port < 1 || proxy.Port > 65535) {
        // Nothing listens on port 1, so every request fails, and none goes out on another way than the user wants.
        proxyError_ = u"the proxy's port %1 is not from 1 to 65535"_s.arg(proxy.Port);
        way = QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, 1);
    } else {
        const ProxyLogin login = proxy.Login.value_or(ProxyLogin());
        way = QNetworkProxy(QNetworkProxy::HttpProxy, proxy.Host, static_cast<quint16>(proxy.Port), login.UserName,
                            login.Password);
    }
    // The engine has one for all its browsers, but each has to be told when it is another.
    if (std::exchange(way_, way) == way && way == QNetworkProxy::applicationProxy())
        return;
    QNetworkProxy::setApplicationProxy(way);
    if (asked_)
        TellOfProxy();
}

// The engine looks for another proxy when it makes a request, and takes it from the next one on. So a request is made
// that leads to nothing, and what is loaded next waits for its end.
void WebEngineBrowser::TellOfProxy() {
    QTcpServer nobody;
    nobody.listen(QHostAddress::LocalHost);
    const QUrl nowhere(u"http://127.0.0.1:%1/"_s.arg(nobody.serverPort()));
    nobody.close();
    auto page = std::make_unique<QWebEnginePage>(profile_.get());
    page->settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    connect(page.get(), &QWebEnginePage::loadFinished, this, &WebEngineBrowser::ProxyIsTold, Qt::QueuedConnection);
    QTimer::singleShot(proxyPatience, page.get(), [this] { ProxyIsTold(); });
    page->load(nowhere);
    proxyPage_ = std::move(page);
}

void WebEngineBrowser::ProxyIsTold() {
    if (!proxyPage_)
        return;
    proxyPage_.release()->deleteLater(); // it may be the one that calls
    if (const Wanted wanted = std::exchange(afterProxy_, {}); wanted.Begin) {
        busy_ = false; // nothing has begun yet
        Load(wanted.Address, wanted.Begin);
    }
}

void WebEngineBrowser::SetUserAgent(const QString& userAgent) {
    profile_->setHttpUserAgent(userAgent.isEmpty() ? defaultUserAgent_ : userAgent);
}

void WebEngineBrowser::ClearCache() {
    profile_->clearHttpCache();
}

void WebEngineBrowser::OnLoadingChanged(const QWebEngineLoadingInfo& info) {
    ++changes_;
    loading_ = info.status() == QWebEngineLoadingInfo::LoadStartedStatus;
    const bool isWanted = overtaking_.Begin && IsSamePage(info.url(), overtaking_.Address);
    if (loading_) {
        LeaveDocument();
        coming_ = info.url();
        overtakingBegun_ |= isWanted;
        busy_ = true;
        gone_ = false;
        lastError_.clear();
        return;
    }
    if (overtaking_.Begin && !isWanted && (!overtakingBegun_ || info.url() == overtaken_)) {
        // That was the other page.
        loading_ = overtakingBegun_;
        overtaken_.clear();
        return QTimer::singleShot(lostAfter, this, [this] { BeginAgain(); });
    }
    overtaking_ = {};
    if (info.status() == QWebEngineLoadingInfo::LoadFailedStatus) {
        const QString reason = !proxyError_.isEmpty()          ? proxyError_
                               : !info.errorString().isEmpty() ? info.errorString()
                                                               : u"the page could not be loaded"_s;
        lastError_ = info.url().toString(QUrl::FullyEncoded) + u": "_s + reason;
        gone_ = info.isErrorPage();
    }
    const QString refusal = page_->TakeRefusal();
    if (!refusal.isEmpty())
        lastError_ = refusal;
    else if (info.status() == QWebEngineLoadingInfo::LoadSucceededStatus && info.url().scheme().startsWith(u"http"_s))
        lastPage_ = info.url().toString(QUrl::FullyEncoded);
    // What is shown now is the document, whether or not a new one came.
    page_->runJavaScript(QString::fromUtf16(stay), world);
    EndBusy();
}

void WebEngineBrowser::OnRendererGone() {
    gone_ = true;
    hung_ = false;
    loading_ = false;
    overtaking_ = {};
    if (const std::function<void()> begin = std::exchange(afterEnd_, nullptr))
        return begin();
    lastError_ = LocationAddress() + u": the page's process has ended"_s;
    EndBusy();
}

void WebEngineBrowser::LeaveDocument() {
    linkTexts_.reset();
    page_->runJavaScript(QString::fromUtf16(leave), world);
}

void WebEngineBrowser::Load(const QUrl& address, std::function<void()> begin) {
    const bool overtakes = std::exchange(busy_, true);
    lastError_.clear();
    overtaking_ = {};
    const qint64 process = hung_ ? page_->renderProcessPid() : 0;
    hung_ = false;
    if (process > 0) {
        // A script that never ends would keep the next page from coming up. It comes when the process has ended.
        gone_ = true;
        afterEnd_ = std::move(begin);
        Kill(process);
        return;
    }
    if (afterEnd_) {
        afterEnd_ = std::move(begin);
        return;
    }
    if (proxyPage_) {
        afterProxy_ = {address, std::move(begin)};
        return;
    }
    asked_ = true;
    LeaveDocument();
    if (overtakes) {
        overtaking_ = {address, begin};
        overtaken_ = coming_;
        overtakingBegun_ = false;
    }
    begin();
}

// The engine loses what it is asked for at the moment when another page comes up: that page ends its loading, and
// nothing begins any more.
void WebEngineBrowser::BeginAgain() {
    if (loading_ || !overtaking_.Begin)
        return;
    LeaveDocument();
    std::exchange(overtaking_, {}).Begin();
}

// Steps through the history item by item: the engine's own "back" skips pages on which nobody has clicked.
void WebEngineBrowser::GoBy(int steps) {
    QWebEngineHistory* const history = page_->history();
    const int target = history->currentItemIndex() + steps;
    if (target >= 0 && target < history->count())
        Load(history->itemAt(target).url(), [history, target] { history->goToItem(history->itemAt(target)); });
}

void WebEngineBrowser::EndBusy() {
    busy_ = false;
    Tell([this] {
        Q_EMIT ProgressChange(0, 100);
        Q_EMIT NavigateComplete(LocationAddress());
    });
}

// The engine speaks up in the middle of its own work, where it does nothing else until it is answered. Whoever listens
// may handle messages and read the page meanwhile, so they are told afterwards.
void WebEngineBrowser::Tell(std::function<void()> what) {
    QMetaObject::invokeMethod(this, std::move(what), Qt::QueuedConnection);
}

std::optional<QVariant> WebEngineBrowser::Evaluate(const QString& script, Asked asked) {
    if (gone_)
        return std::nullopt;
    // Shared with the engine, which may answer when nobody waits any more.
    auto answer = std::make_shared<std::optional<QVariant>>();
    const QPointer<WebEngineBrowser> self(this);
    const auto ask = [this, &script, answer, self] {
        page_->runJavaScript(script, world, [answer, self](const QVariant& value) {
            *answer = value;
            if (self)
                self->hung_ = false;
        });
    };
    QElapsedTimer waited;
    waited.start();
    ask();
    quint64 changes = changes_;
    while (!*answer) {
        const qint64 left = patience_.count() - waited.elapsed();
        if (left <= 0) {
            hung_ = true;
            lastError_ = LocationAddress() + u": the page does not answer"_s;
            return std::nullopt;
        }
        if (loop_.Quitting())
            return std::nullopt;
        loop_.WaitForMessage(left);
        if (!self || gone_)
            return std::nullopt;
        if (changes != changes_ && !*answer) {
            // A page that goes takes the question with it.
            if (asked == Asked::Once)
                return std::nullopt;
            changes = changes_;
            ask();
        }
    }
    return std::move(**answer);
}

} // namespace Brindle
