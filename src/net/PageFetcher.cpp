#include "net/PageFetcher.h"

#include "core/Delay.h"
#include "net/TextDecoder.h"
#include "toolkit/Markup.h"
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
constexpr int defaultProxyPort = 80;
constexpr qint32 pauseAfterFailure = 500;

int PortOf(const QString& text) {
    bool isNumber = false;
    const int port = text.toInt(&isNumber);
    return isNumber ? port : defaultProxyPort;
}

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
    const qint64 timeout = readTimeout_ > 0 ? readTimeout_ : readTimeoutMs;
    qsizetype index = -1;
    bool success = false;
    do {
        if (settings_.rUseProxy)
            ApplySingleProxy();
        if (settings_.rRandomProxy)
            ApplyNextProxy(index);
        if (state_.ShouldStop || loop_.Quitting()) {
            KeepReason(url, u"stopped"_s);
            break;
        }
        WaitRandomDelay();
        ShowRequest();
        HttpResponse response = Get(url, timeout);
        if (response.Succeeded()) {
            page = TextOf(response, utf8);
            Show({});
            success = true;
            break;
        }
        if (response.Failure == HttpFailure::NoTlsLayer) {
            response = GetByTls(url);
            if (response.Succeeded()) {
                page = TextOf(response, false);
                success = true;
                break;
            }
        }
        KeepReason(url, ReasonOf(response));
        Delay(loop_, pauseAfterFailure);
        if (state_.ShouldStop) {
            status_.SetPanel(0, texts_.Text(Message::RequestStopped));
        } else {
            status_.SetPanel(0, {});
            if (settings_.rRandomProxy)
                status_.SetPanel(0, texts_.Text(Message::NextProxy));
        }
        loop_.ProcessMessages();
        // Without a list of proxies one attempt is all; with it the round goes on until one succeeds or the user stops.
    } while (!success && !state_.ShouldStop && settings_.rRandomProxy && !loop_.Quitting());
    if (success)
        lastError_.clear();
    return success;
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
    status_.SetPanel(0, texts_.Text(Message::DirectDownload));
    status_.SetProgressPosition(0);
    loop_.ProcessMessages();
    const HttpResponse response = Get(url, readTimeout_ > 0 ? readTimeout_ : directReadTimeoutMs);
    if (response.Succeeded()) {
        page = TextOf(response, utf8);
        status_.SetPanel(0, {});
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

void PageFetcher::ApplySingleProxy() {
    proxy_.Host = settings_.eHost;
    proxy_.Port = PortOf(settings_.ePort);
    if (!settings_.rAuthentification)
        return;
    proxy_.BasicAuthentication = true;
    proxy_.UserName = settings_.eUserName;
    proxy_.Password = settings_.ePassword;
}

void PageFetcher::ApplyNextProxy(qsizetype& index) {
    const QStringList& list = settings_.eRandomProxies;
    QString host;
    QString port;
    QString userName;
    QString password;
    // A list of blank lines alone must not be searched for ever: one round is enough to know it.
    for (qsizetype looked = 0; host.isEmpty() && port.isEmpty() && looked < list.size(); ++looked) {
        if (++index == list.size())
            index = 0;
        const QStringList fields = SplitText(list[index], u":");
        host = fields.value(0);
        port = fields.value(1);
        if (fields.size() > 3) {
            userName = fields[2];
            password = fields[3];
        }
    }
    proxy_.Host = host;
    proxy_.Port = PortOf(port);
    proxy_.BasicAuthentication = !userName.isEmpty();
    if (proxy_.BasicAuthentication) {
        proxy_.UserName = userName;
        proxy_.Password = password;
    }
}

void PageFetcher::WaitRandomDelay() {
    bool isNumber = false;
    const int bound = settings_.eRandom.toInt(&isNumber);
    if (!isNumber)
        return;
    status_.SetPanel(0, texts_.Text(Message::RandomDelay));
    const qint64 seconds = bound > 0 ? random_(bound) : 0;
    Delay(loop_, static_cast<qint32>(std::min<qint64>(seconds * 1000, std::numeric_limits<qint32>::max())));
}

void PageFetcher::ShowRequest() {
    if (!settings_.rRandomProxy && !settings_.rUseProxy)
        return Show(texts_.Text(Message::Request));
    Show(texts_.Text(Message::ProxyRequest) + u' ' + proxy_.Host + u':' + QString::number(proxy_.Port));
}

HttpResponse PageFetcher::Get(const QString& url, qint64 timeoutMs) {
    HttpRequest request;
    request.Url = url;
    request.Headers = noCacheHeaders;
    request.UserAgent = userAgent;
    request.Proxy = proxy_;
    request.ReadTimeoutMs = timeoutMs;
    request.AllowTls = false;
    return idHttp1_.Fetch(request, loop_,
                          {[this](qint64 size) { IdHTTP1WorkBegin(size); },
                           [this](qint64 count) { IdHTTP1Work(count); }, [this] { IdHTTP1WorkEnd(); },
                           [this](const QString& newLocation) { IdHTTP1Redirect(newLocation); }});
}

// A client for this one request: without proxy, without the shared cookies, without progress.
HttpResponse PageFetcher::GetByTls(const QString& url) {
    HttpClient client;
    HttpRequest request;
    request.Url = url;
    request.Headers = {acceptHeader};
    request.UserAgent = userAgent;
    request.OnlyTls12 = true;
    request.CaFile = caFile_;
    HttpClient* const outer = std::exchange(tlsClient_, &client);
    HttpResponse response = client.Fetch(request, loop_);
    tlsClient_ = outer;
    return response;
}

QString PageFetcher::TextOf(const HttpResponse& response, bool utf8) const {
    const QString text = DecodePage(response.Body, response.ContentType);
    return utf8 ? QString::fromUtf8(text.toLocal8Bit()) : text;
}

void PageFetcher::Show(const QString& text) {
    status_.SetPanel(0, text);
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
