#include "net/PageFetcher.h"

#include "core/Delay.h"
#include "net/ProxyText.h"
#include "net/TextDecoder.h"
#include "net/UserAgent.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"

#include <algorithm>
#include <limits>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

const QString userAgent = u"Mozilla/5.0 (compatible; MSIE 9.0; Windows NT 6.1; Trident/5.0)"_s;
const QString acceptHeader = u"Accept: text/html, */*"_s;
const QStringList noCacheHeaders{acceptHeader, u"Cache-Control: no-cache"_s, u"Pragma: no-cache"_s};

constexpr qint64 readTimeoutMs = 40'000;
constexpr qint64 directReadTimeoutMs = 60'000;
constexpr qint64 robotsReadTimeoutMs = 30'000;
constexpr qint64 robotsLimit = 500 * 1024; // RFC 9309, section 2.5
constexpr qint32 pauseAfterFailure = 500;

QString ReasonOf(const HttpResponse& response) {
    return response.Complete() ? u"HTTP status %1"_s.arg(response.Status) : response.Error;
}

} // namespace

PageFetcher::PageFetcher(HarvestState& state, const Settings& settings, const MessageTexts& texts, MessageLoop& loop,
                         StatusView& status)
    : state_(state), settings_(settings), texts_(texts), loop_(loop), status_(status), random_([](qint32 bound) {
          return QRandomGenerator::global()->bounded(bound);
      }) {}

bool PageFetcher::DownloadURL(const QString& url, QString& page, bool utf8) {
    lastError_.clear();
    if (!StartsWithFolded(url, u"http")) {
        page.clear();
        KeepReason(url, u"not an HTTP address"_s);
        return false;
    }
    Rotation rotation;
    rotation.Begun = loop_.TickCount();
    do {
        if (!ChooseProxy(rotation))
            return false;
        if (state_.ShouldStop || loop_.Quitting()) {
            KeepReason(url, u"stopped"_s);
            return false;
        }
        WaitRandomDelay(rotation);
        ShowRequest(rotation);
        HttpResponse response = Get(url, readTimeoutMs, TimeOfAttempt(rotation));
        const bool byTls = response.Failure == HttpFailure::NoTlsLayer;
        if (byTls)
            response = GetByTls(url);
        if (response.Succeeded()) {
            page = TextOf(response, utf8 && !byTls);
            state_.LastFetched = {response.FinalUrl, response.Peer};
            if (!byTls)
                Show({});
            return true;
        }
        // The TLS fallback uses no proxy, so the next one would change nothing.
        rotation.Ended = byTls || !settings_.rRandomProxy;
        EndFailedAttempt(url, ReasonOf(response), rotation);
        // Without a list of proxies one attempt is all; with it the round goes on until one succeeds or the user stops.
    } while (!rotation.Ended && settings_.rRandomProxy && !state_.ShouldStop && !loop_.Quitting());
    return false;
}

void PageFetcher::EndFailedAttempt(const QString& url, const QString& reason, Rotation& rotation) {
    KeepReason(url, reason);
    if (!rotation.Ended) {
        const bool cutShort = TimeLeft(rotation) == 0 && !rotation.LastFailure.isEmpty();
        if (!cutShort && reason != rotation.LastFailure && AttemptFailed)
            AttemptFailed(lastError_);
        if (!cutShort)
            rotation.LastFailure = reason;
    }
    Delay(loop_, pauseAfterFailure);
    if (state_.ShouldStop) {
        status_.SetPanel(StatusPanel::Message, texts_.Text(Message::RequestStopped));
    } else {
        status_.SetPanel(StatusPanel::Message, {});
        if (!rotation.Ended)
            status_.SetPanel(StatusPanel::Message, texts_.Text(Message::NextProxy));
    }
    loop_.ProcessMessages();
    if (rotation.Ended || TimeLeft(rotation) != 0)
        return;
    rotation.Ended = true;
    const double seconds = static_cast<double>(patience_.value_or(0)) / 1000;
    KeepReason(url, u"given up after %1 s: %2"_s.arg(seconds).arg(rotation.LastFailure));
    if (GaveUp)
        GaveUp(lastError_);
}

// Milliseconds that are left for the address; nothing when its time has no bound.
std::optional<qint64> PageFetcher::TimeLeft(const Rotation& rotation) const {
    if (!patience_ || !settings_.rRandomProxy)
        return std::nullopt;
    return std::max<qint64>(0, *patience_ - static_cast<qint64>(loop_.TickCount() - rotation.Begun));
}

// Milliseconds for the next request, 0 for no bound.
qint64 PageFetcher::TimeOfAttempt(const Rotation& rotation) const {
    constexpr qint64 leastForTheFirst = 1000;
    const std::optional<qint64> left = TimeLeft(rotation);
    if (!left)
        return 0;
    return std::max<qint64>(*left, rotation.LastFailure.isEmpty() ? leastForTheFirst : 1);
}

bool PageFetcher::DirectDownloadURL(const QString& url, QString& page, bool utf8) {
    lastError_.clear();
    if (!StartsWithFolded(url, u"http")) {
        page.clear();
        KeepReason(url, u"not an HTTP address"_s);
        return false;
    }
    if (state_.ShouldStop) {
        KeepReason(url, u"stopped"_s);
        return false;
    }
    status_.SetPanel(StatusPanel::Message, texts_.Text(Message::DirectDownload));
    status_.SetProgressPosition(0);
    loop_.ProcessMessages();
    if (state_.CurrWay == Way::Modern) {
        // The classic way keeps the proxy of the last call, and with none before it the user's own address is seen.
        Rotation rotation;
        ChooseProxy(rotation);
    }
    const HttpResponse response = Get(url, directReadTimeoutMs, 0);
    if (response.Succeeded()) {
        page = TextOf(response, utf8);
        state_.LastFetched = {response.FinalUrl, response.Peer};
        status_.SetPanel(StatusPanel::Message, {});
        return true;
    }
    KeepReason(url, ReasonOf(response));
    Show(state_.ShouldStop ? texts_.Text(Message::DirectDownloadStopped) : QString());
    return false;
}

void PageFetcher::Disconnect() {
    idHttp1_.Disconnect();
    if (tlsClient_)
        tlsClient_->Disconnect();
}

// False when the list of proxies was emptied while it rotated: that ends the round, and no request shows the user's own
// address instead.
bool PageFetcher::ChooseProxy(Rotation& rotation) {
    if (!settings_.rUseProxy && !settings_.rRandomProxy)
        proxy_ = {};
    if (settings_.rUseProxy)
        ApplySingleProxy();
    return !settings_.rRandomProxy || ApplyNextProxy(rotation);
}

void PageFetcher::ApplySingleProxy() {
    proxy_.Host = settings_.eHost;
    proxy_.Port = ReadProxyPort(settings_.ePort);
    if (settings_.rAuthentification)
        proxy_.Login = {settings_.eUserName, settings_.ePassword};
}

bool PageFetcher::ApplyNextProxy(Rotation& rotation) {
    const QStringList& list = settings_.eRandomProxies;
    ProxyText next;
    // A list of blank lines alone must not be searched for ever: one round is enough to know it.
    for (qsizetype looked = 0; next.Host.isEmpty() && next.Port.isEmpty() && looked < list.size(); ++looked) {
        // The user may have shortened the list meanwhile.
        if (++rotation.Place >= list.size())
            rotation.Place = 0;
        next = ReadProxyText(list[rotation.Place]);
    }
    const bool found = !next.Host.isEmpty() || !next.Port.isEmpty();
    if (rotation.Found && !found)
        return false;
    rotation.Found = found;
    proxy_ = {next.Host, ReadProxyPort(next.Port), {}};
    if (next.HasLogin && !next.UserName.isEmpty())
        proxy_.Login = {next.UserName, next.Password};
    return true;
}

void PageFetcher::WaitRandomDelay(const Rotation& rotation) {
    bool isNumber = false;
    const int bound = settings_.eRandom.toInt(&isNumber);
    if (!isNumber)
        return;
    status_.SetPanel(StatusPanel::Message, texts_.Text(Message::RandomDelay) + rotation.Remark());
    qint64 ms = bound > 0 ? random_(bound) * qint64{1000} : 0;
    if (const std::optional<qint64> left = TimeLeft(rotation); left && loop_.Pace() > 0)
        ms = std::min(ms, qRound64(static_cast<double>(*left) / loop_.Pace()));
    Delay(loop_, static_cast<qint32>(std::min<qint64>(ms, std::numeric_limits<qint32>::max())));
}

void PageFetcher::ShowRequest(const Rotation& rotation) {
    if (!settings_.rRandomProxy && !settings_.rUseProxy)
        return Show(texts_.Text(Message::Request));
    Show(texts_.Text(Message::ProxyRequest) + u' ' + proxy_.Host + u':' + QString::number(proxy_.Port) +
         rotation.Remark());
}

HttpResponse PageFetcher::Send(HttpClient& client, const HttpRequest& request, const HttpEvents& events) {
    return client.Fetch(request, loop_, events);
}

HttpRequest PageFetcher::NewRequest(const QString& url) const {
    const bool modern = state_.CurrWay == Way::Modern;
    HttpRequest request;
    request.Url = url;
    request.Headers = noCacheHeaders;
    request.UserAgent = modern ? OwnUserAgent() : userAgent;
    request.Via = proxy_;
    request.Tls = modern ? TlsUse::From12 : TlsUse::Refused;
    request.CaFile = caFile_;
    request.Guarded = modern;
    request.From = state_.CurrPage;
    return request;
}

HttpResponse PageFetcher::FetchRobots(const QString& url) {
    if (state_.ShouldStop || loop_.Quitting()) {
        HttpResponse stopped;
        stopped.Failure = HttpFailure::Other;
        stopped.Error = u"stopped"_s;
        return stopped;
    }
    Rotation rotation;
    ChooseProxy(rotation);
    HttpRequest request = NewRequest(url);
    request.Headers = {u"Accept: text/plain,*/*;q=0.5"_s};
    request.UserAgent = OwnUserAgent();
    request.ReadTimeoutMs = robotsReadTimeoutMs;
    request.Tls = TlsUse::From12;
    request.Guarded = true;
    request.BodyLimit = robotsLimit;
    request.CutBody = true;
    return Send(idHttp1_, request, {});
}

HttpResponse PageFetcher::Get(const QString& url, qint64 timeoutMs, qint64 totalTimeoutMs) {
    HttpRequest request = NewRequest(url);
    request.ReadTimeoutMs = timeoutMs;
    request.TotalTimeoutMs = totalTimeoutMs;
    return Send(idHttp1_, request,
                {[this](qint64 size) { IdHTTP1WorkBegin(size); }, [this](qint64 count) { IdHTTP1Work(count); },
                 [this] { IdHTTP1WorkEnd(); }, [this](const QString& newLocation) { IdHTTP1Redirect(newLocation); }});
}

// A client for this one request: without proxy, without the shared cookies, without progress.
HttpResponse PageFetcher::GetByTls(const QString& url) {
    HttpClient client;
    HttpRequest request;
    request.Url = url;
    request.Headers = {acceptHeader};
    request.UserAgent = userAgent;
    request.Tls = TlsUse::Only12;
    request.CaFile = caFile_;
    HttpClient* const outer = std::exchange(tlsClient_, &client);
    HttpResponse response = Send(client, request, {});
    tlsClient_ = outer;
    return response;
}

QString PageFetcher::TextOf(const HttpResponse& response, bool utf8) const {
    const QString text = DecodePage(response.Body, response.ContentType);
    // The modern way goes by what the page says of its characters.
    return utf8 && state_.CurrWay == Way::Classic ? QString::fromUtf8(text.toLocal8Bit()) : text;
}

void PageFetcher::Show(const QString& text) {
    status_.SetPanel(StatusPanel::Message, text);
    loop_.ProcessMessages();
}

void PageFetcher::KeepReason(const QString& url, const QString& reason) {
    lastError_ = ShownAddress(url) + u": " + reason;
    // One line, whatever the address holds; and nothing that a terminal would obey.
    for (QChar& c : lastError_)
        if (c.category() == QChar::Other_Control)
            c = u' ';
}

void PageFetcher::IdHTTP1WorkBegin(qint64 expectedSize) {
    progressMaximum_ = expectedSize;
    status_.SetProgressMaximum(expectedSize);
    status_.SetProgressPosition(0);
    loop_.ProcessMessages();
}

void PageFetcher::IdHTTP1Work(qint64 count) {
    status_.SetProgressPosition(count);
    loop_.ProcessMessages();
}

void PageFetcher::IdHTTP1WorkEnd() {
    status_.SetProgressPosition(progressMaximum_);
    loop_.ProcessMessages();
}

void PageFetcher::IdHTTP1Redirect(const QString& newLocation) {
    state_.CurrRedirect = newLocation;
}

} // namespace Brindle
