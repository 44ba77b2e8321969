#include "browser/StaticBrowser.h"

#include "core/Errors.h"
#include "net/TextDecoder.h"
#include "net/UserAgent.h"
#include "page/MarkupFormText.h"
#include "toolkit/PageAddress.h"

#include <QLocale>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int progressIntervalMs = 100;
constexpr qint64 readTimeoutMs = 60'000;
constexpr auto blankPage = u"about:blank";

QString AcceptedLanguages() {
    const QString name = QLocale::system().bcp47Name();
    return name == u"C" || name == u"en" || name.isEmpty() ? u"en-US,en;q=0.9"_s : name + u",en;q=0.8";
}

// Text that is no markup is shown as engines show it.
QString PlainTextPage(const QString& text) {
    return u"<pre style=\"word-wrap: break-word; white-space: pre-wrap;\">"_s + text.toHtmlEscaped() + u"</pre>"_s;
}

QByteArray MediaType(const QByteArray& contentType) {
    return contentType.split(';').constFirst().trimmed().toLower();
}

bool IsMarkup(const QByteArray& type) {
    return type.isEmpty() || type == "text/html" || type.endsWith("xml") || type == "unknown/unknown" ||
           type == "application/unknown" || type == "*/*";
}

} // namespace

StaticBrowser::StaticBrowser() {
    template_.UserAgent = OwnUserAgent();
    template_.ReadTimeoutMs = readTimeoutMs;
    template_.ReuseConnection = true;
    template_.Guarded = true;
    progress_.setInterval(progressIntervalMs);
    connect(&progress_, &QTimer::timeout, this, &StaticBrowser::ReportProgress);
}

StaticBrowser::~StaticBrowser() = default;

void StaticBrowser::Navigate(const QString& address) {
    Open(TypedAddress(address), {}, {});
}

void StaticBrowser::Follow(const QString& address) {
    const QString scheme = SchemeOf(address);
    if (scheme != u"http" && scheme != u"https")
        lastError_ = ShownAddress(address) + u": not an http or https address"_s;
    else
        Open(address, RefererFor(document_.Address, address), lastPage_);
}

void StaticBrowser::Open(const QString& address, const QString& referer, const PageOrigin& from) {
    const QString scheme = SchemeOf(address);
    if (scheme == u"about") {
        historyTarget_ = -1;
        ShowBlank();
    } else if (scheme != u"http" && scheme != u"https") {
        lastError_ = address + u": not an http or https address"_s;
    } else if (address.contains(u'#') && WithoutFragment(address) == WithoutFragment(document_.Address) && !Busy() &&
               lastError_.isEmpty()) {
        // Another place on the same page.
        document_.Address = address;
        AddToHistory(address);
        Q_EMIT NavigateComplete(address);
    } else {
        historyTarget_ = -1;
        Load(address, referer, from, false);
    }
}

void StaticBrowser::Stop() {
    transfer_.reset();
    progress_.stop();
}

void StaticBrowser::Refresh() {
    if (document_.Address.isEmpty() || document_.Address == blankPage)
        return;
    historyTarget_ = historyPlace_;
    Load(document_.Address, {}, {}, true);
}

void StaticBrowser::GoBack() {
    GoBy(-1);
}

void StaticBrowser::GoForward() {
    GoBy(1);
}

void StaticBrowser::GoBy(int steps) {
    const int target = historyPlace_ + steps;
    if (target < 0 || target >= static_cast<int>(history_.size()))
        return;
    const QString address = history_[static_cast<size_t>(target)];
    historyTarget_ = target;
    if (address == blankPage)
        ShowBlank();
    else
        Load(address, {}, {}, false);
}

void StaticBrowser::ShowBlank() {
    Stop();
    lastError_.clear();
    Document blank;
    blank.Address = QString::fromUtf16(blankPage);
    blank.Parsed.emplace(QString());
    Show(std::move(blank));
}

void StaticBrowser::Load(const QString& address, const QString& referer, const PageOrigin& from, bool reload) {
    Stop();
    lastError_.clear();
    loading_ = address;
    expectedSize_ = 0;
    HttpRequest request = template_;
    request.Url = WithoutFragment(address).toString();
    request.From = from;
    request.Headers = {u"Accept: text/html,application/xhtml+xml,application/xml;q=0.9,*/*;q=0.8"_s,
                       u"Accept-Language: "_s + AcceptedLanguages()};
    if (!referer.isEmpty())
        request.Headers.append(u"Referer: "_s + referer);
    if (reload)
        request.Headers.append(u"Cache-Control: no-cache"_s);
    const quint64 load = ++loads_;
    transfer_ = client_.Start(request, [this, load] {
        // The transfer ends with this call, so it is not to be destroyed within it.
        QMetaObject::invokeMethod(
            this,
            [this, load] {
                if (load == loads_ && transfer_)
                    Loaded();
            },
            Qt::QueuedConnection);
    });
    progress_.start();
}

void StaticBrowser::Loaded() {
    HttpResponse response = transfer_->Response();
    Stop();
    const QString shown = ShownAddress(loading_);
    Document document;
    document.Address = loading_;
    if (!response.Complete()) {
        lastError_ = shown + u": "_s + response.Error;
        document.Parsed.emplace();
    } else if (response.Status == 204 || response.Status == 205) {
        // No content: the page that is shown stays.
        Q_EMIT NavigateComplete(document_.Address);
        return;
    } else {
        document.Address = response.FinalUrl;
        document.Peer = response.Peer;
        lastPage_ = {response.FinalUrl, response.Peer};
        if (loading_.contains(u'#') && !response.FinalUrl.contains(u'#'))
            document.Address += QStringView(loading_).sliced(loading_.indexOf(u'#'));
        const QByteArray type = MediaType(response.ContentType);
        if (IsMarkup(type)) {
            document.Source = DecodePage(response.Body, response.ContentType);
        } else if (type.startsWith("text/") || type.endsWith("json")) {
            document.Source = PlainTextPage(DecodePage(response.Body, response.ContentType));
        } else {
            lastError_ = shown + u": no page but "_s + QString::fromLatin1(type);
            document.Parsed.emplace();
        }
    }
    Show(std::move(document));
}

// Takes a document that has come in. Whoever is told of it may navigate on at once.
void StaticBrowser::Show(Document document) {
    document_ = std::move(document);
    if (historyTarget_ >= 0) {
        historyPlace_ = historyTarget_;
        history_[static_cast<size_t>(historyPlace_)] = document_.Address;
    } else {
        AddToHistory(document_.Address);
    }
    const QString address = document_.Address;
    Q_EMIT ProgressChange(0, 100);
    Q_EMIT NavigateComplete(address);
}

void StaticBrowser::ReportProgress() {
    if (!transfer_)
        return;
    // Told only when the transfer has spoken: whoever hears of it may end it.
    qint64 progress = -1;
    HttpEvents events;
    events.WorkBegin = [this](qint64 size) { expectedSize_ = std::max<qint64>(size, 0); };
    events.Work = [&progress](qint64 count) { progress = count; };
    transfer_->Report(events);
    if (progress >= 0)
        Q_EMIT ProgressChange(progress, expectedSize_);
}

void StaticBrowser::AddToHistory(const QString& address) {
    const int kept = historyPlace_ + 1; // what lay ahead is forgotten
    history_.resize(static_cast<size_t>(kept));
    if (history_.empty() || history_.back() != address)
        history_.push_back(address);
    historyPlace_ = static_cast<int>(history_.size()) - 1;
}

const HtmlDocument& StaticBrowser::Parsed() {
    if (!document_.Parsed) {
        try {
            document_.Parsed.emplace(document_.Source);
        } catch (const Failure& failure) {
            lastError_ = ShownAddress(document_.Address) + u": "_s + failure.Message();
            document_.Parsed.emplace();
        }
        document_.Source.clear();
    }
    return *document_.Parsed;
}

QString StaticBrowser::BodyOuterHtml(MarkupForm form) {
    if (Busy() || document_.Address.isEmpty())
        return {};
    const HtmlDocument& page = Parsed();
    if (form == MarkupForm::Standard)
        return page.BodyOuterHtml(form);
    if (!document_.LegacyBody)
        document_.LegacyBody = page.BodyOuterHtml(form);
    return *document_.LegacyBody;
}

QString StaticBrowser::DocumentHtml() {
    return Busy() || document_.Address.isEmpty() ? QString() : Parsed().DocumentHtml();
}

int StaticBrowser::LinkCount() {
    return Busy() || document_.Address.isEmpty() ? 0 : static_cast<int>(Parsed().Links().size());
}

QString StaticBrowser::LinkInnerText(int index) {
    return index >= 0 && index < LinkCount() ? Parsed().Links()[static_cast<size_t>(index)].Text : QString();
}

QString StaticBrowser::LinkTarget(int index) {
    if (index < 0 || index >= LinkCount())
        return {};
    const HtmlDocument& page = Parsed();
    const HtmlLink& link = page.Links()[static_cast<size_t>(index)];
    const QString base =
        page.BaseHref().isEmpty() ? document_.Address : ResolveAddress(document_.Address, page.BaseHref());
    const QString target = ResolveAddress(base, link.Href);
    const QString scheme = SchemeOf(target);
    return !link.Downloads && (scheme == u"http" || scheme == u"https" || scheme == u"about") ? target : QString();
}

void StaticBrowser::ClickLink(int index) {
    if (const QString target = LinkTarget(index); !target.isEmpty())
        Open(target, RefererFor(document_.Address, target), lastPage_);
}

void StaticBrowser::SetProxy(const Proxy& proxy) {
    template_.Via = proxy;
}

void StaticBrowser::SetUserAgent(const QString& userAgent) {
    template_.UserAgent = userAgent.isEmpty() ? OwnUserAgent() : userAgent;
}

} // namespace Brindle
