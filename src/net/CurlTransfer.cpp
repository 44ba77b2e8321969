#include "net/CurlTransfer.h"

#include "net/ServerTrust.h"
#include "toolkit/PageAddress.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int redirectLimit = 20;
constexpr qint64 discardLimit = 1 << 20;

bool IsRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

} // namespace

CurlTransfer::CurlTransfer(CurlSession& session, HttpRequest request, std::function<void()> onDone)
    : session_(session), request_(std::move(request)), onDone_(std::move(onDone)), easy_(session.Take()) {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { WatchTime(); });
    timer_.setSingleShot(true);
    sinceStart_.start();
    curl_slist* list = nullptr;
    for (const QString& header : request_.Headers)
        list = LibCurl().slist_append(list, header.toUtf8().constData());
    headersSent_.reset(list);
    if (request_.Guarded && !request_.From.Address.isEmpty())
        from_ = KindOfOrigin(request_.From);
    Begin(NormalAddress(request_.Url));
}

CurlTransfer::~CurlTransfer() {
    session_.Loop().Remove(easy_.get());
    session_.GiveBack(std::move(easy_));
}

void CurlTransfer::Abort() {
    if (done_)
        return;
    session_.Loop().Remove(easy_.get());
    Fail(HttpFailure::Other, u"stopped"_s);
}

void CurlTransfer::Report(const HttpEvents& events) {
    while (reportedRedirects_ < redirects_.size()) {
        const QString location = redirects_[reportedRedirects_++];
        if (events.Redirect)
            events.Redirect(location);
    }
    if (bodyBegun_ && !reportedBegin_) {
        reportedBegin_ = true;
        if (events.WorkBegin)
            events.WorkBegin(expectedSize_);
    }
    if (reportedBegin_ && received_ != reportedCount_) {
        reportedCount_ = received_;
        if (events.Work)
            events.Work(reportedCount_);
    }
    if (done_ && reportedBegin_ && !reportedEnd_) {
        reportedEnd_ = true;
        if (events.WorkEnd)
            events.WorkEnd();
    }
}

void CurlTransfer::Begin(const QString& address) {
    address_ = address;
    const QString scheme = SchemeOf(address);
    if (scheme.isEmpty())
        return Fail(HttpFailure::Other, u"not a valid address"_s);
    if (scheme == u"https" && request_.Tls == TlsUse::Refused)
        return Fail(HttpFailure::NoTlsLayer, u"IOHandler: this client has no TLS layer"_s);
    if (scheme != u"http" && scheme != u"https")
        return Fail(HttpFailure::Other, u"not an HTTP address"_s);
    if (!request_.Via.Host.isEmpty() && (request_.Via.Port <= 0 || request_.Via.Port > 65535))
        return Fail(HttpFailure::Other, u"%1 is no proxy port"_s.arg(request_.Via.Port));
    // Where a proxy looks the name up, its text is all that is known.
    const std::optional<AddressKind> kind = from_ ? KindOfHost(HostOf(address)) : std::nullopt;
    if (kind && !MayLeadTo(*from_, *kind))
        return Fail(HttpFailure::Other, RefusalText(HostOf(address), HostOf(address)));
    Configure();
    headers_ = {};
    body_.clear();
    discarded_ = 0;
    tooLarge_ = false;
    cut_ = false;
    sinceBytes_.start();
    WatchTime();
    if (!done_)
        session_.Loop().Add(
            easy_.get(), [this](CURLcode result) { Ended(result); }, [this] { sinceBytes_.start(); });
}

void CurlTransfer::Configure() {
    Set(CURLOPT_URL, address_.toUtf8().constData());
    Set(CURLOPT_PATH_AS_IS, 1L);
    Set(CURLOPT_NOSIGNAL, 1L);
    Set(CURLOPT_QUICK_EXIT, 1L); // an aborted request does not wait for the name server
    Set(CURLOPT_SHARE, session_.Cookies());
    Set(CURLOPT_COOKIEFILE, ""); // switches the cookie engine on
    Set(CURLOPT_FOLLOWLOCATION, 0L);
    Set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    Set(CURLOPT_HTTP09_ALLOWED, 0L);
    Set(CURLOPT_ACCEPT_ENCODING, "");
    Set(CURLOPT_USERAGENT, request_.UserAgent.toUtf8().constData());
    Set(CURLOPT_HTTPHEADER, headersSent_.get());
    Set(CURLOPT_FORBID_REUSE, request_.ReuseConnection ? 0L : 1L);
    Set(CURLOPT_FRESH_CONNECT, request_.ReuseConnection ? 0L : 1L);
    ConfigureTls();
    ConfigureProxy();
    ConfigureGuard();
    Set(CURLOPT_ERRORBUFFER, errorText_);
    errorText_[0] = 0;
    Set(CURLOPT_WRITEFUNCTION, &CurlTransfer::OnBody);
    Set(CURLOPT_WRITEDATA, this);
    Set(CURLOPT_HEADERFUNCTION, &CurlTransfer::OnHeader);
    Set(CURLOPT_HEADERDATA, this);
}

void CurlTransfer::ConfigureTls() {
    Set(CURLOPT_SSL_VERIFYPEER, 1L);
    Set(CURLOPT_SSL_VERIFYHOST, 2L);
    const long newest = request_.Tls == TlsUse::Only12 ? CURL_SSLVERSION_MAX_TLSv1_2 : CURL_SSLVERSION_MAX_DEFAULT;
    Set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2) | newest);
    // The variable is the one that OpenSSL's own look-up obeys; the library goes past it.
    const QString own = AuthorityOf(request_.Url);
    const QString& given = own.isEmpty() ? request_.CaFile : own;
    const QByteArray caFile = given.isEmpty() ? qgetenv("SSL_CERT_FILE") : QByteArray(given.toUtf8());
    if (!caFile.isEmpty())
        Set(CURLOPT_CAINFO, caFile.constData());
    else
        Set(CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_NATIVE_CA)); // where the system has a store of its own
}

void CurlTransfer::ConfigureProxy() {
    const Proxy& proxy = request_.Via;
    Set(CURLOPT_NOPROXY, "");
    // An empty text, unlike none, also switches off the proxies of the environment.
    const QByteArray address = proxy.Host.isEmpty() ? QByteArray("") : "http://" + proxy.Host.toUtf8();
    Set(CURLOPT_PROXY, address.constData());
    if (proxy.Host.isEmpty())
        return;
    Set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L); // they are the proxy's
    Set(CURLOPT_PROXYPORT, static_cast<long>(proxy.Port));
    if (!proxy.Login)
        return;
    Set(CURLOPT_PROXYAUTH, static_cast<long>(CURLAUTH_BASIC));
    // The library decodes what it is given here.
    const QByteArray login =
        proxy.Login->UserName.toUtf8().toPercentEncoding() + ':' + proxy.Login->Password.toUtf8().toPercentEncoding();
    Set(CURLOPT_PROXYUSERPWD, login.constData());
}

// A guarded hop asks twice: before a connection is made, and, as it may use one that was made before, when there is
// one.
void CurlTransfer::ConfigureGuard() {
    if (!from_ || !request_.Via.Host.isEmpty())
        return;
    refusal_.clear();
    Set(CURLOPT_OPENSOCKETFUNCTION, &CurlTransfer::OpenSocket);
    Set(CURLOPT_OPENSOCKETDATA, this);
    Set(CURLOPT_PREREQFUNCTION, &CurlTransfer::BeforeRequest);
    Set(CURLOPT_PREREQDATA, this);
}

curl_socket_t CurlTransfer::OpenSocket(void* self, curlsocktype /*purpose*/, curl_sockaddr* address) {
    // Behind the family and the port, in version 6 also behind the flow's label; the same on every system.
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&address->addr);
    std::optional<NumericAddress> numeric;
    if (address->family == AF_INET)
        numeric = NumericAddressOf({bytes + 4, 4});
    else if (address->family == AF_INET6)
        numeric = NumericAddressOf({bytes + 8, 16});
    if (!static_cast<CurlTransfer*>(self)->MayConnectTo(numeric, {}))
        return CURL_SOCKET_BAD;
    return socket(address->family, address->socktype, address->protocol);
}

int CurlTransfer::BeforeRequest(void* self, char* peer, char* /*own*/, int /*peerPort*/, int /*ownPort*/) {
    const QString numeric = QString::fromLatin1(peer);
    const bool may = static_cast<CurlTransfer*>(self)->MayConnectTo(ReadNumericAddress(numeric), numeric);
    return may ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
}

bool CurlTransfer::MayConnectTo(const std::optional<NumericAddress>& address, const QString& shown) {
    if (address && MayLeadTo(*from_, KindOf(*address)))
        return true;
    refusal_ = RefusalText(HostOf(address_), shown.isEmpty() && address ? TextOf(*address) : shown);
    return false;
}

size_t CurlTransfer::OnHeader(const char* data, size_t size, size_t count, void* self) {
    const size_t length = size * count;
    const bool taken =
        static_cast<CurlTransfer*>(self)->TakeHeader(QByteArrayView(data, static_cast<qsizetype>(length)));
    return taken ? length : 0;
}

size_t CurlTransfer::OnBody(const char* data, size_t size, size_t count, void* self) {
    const size_t length = size * count;
    const bool taken = static_cast<CurlTransfer*>(self)->TakeBody(QByteArrayView(data, static_cast<qsizetype>(length)));
    return taken ? length : 0;
}

// False when the rest of the response is not worth waiting for.
bool CurlTransfer::TakeHeader(QByteArrayView line) {
    const bool before = headers_.Ended();
    headers_.Take(line);
    if (headers_.TooLarge())
        return false;
    if (before || !headers_.Ended())
        return true;
    Set(CURLOPT_HTTP_CONTENT_DECODING, headers_.Encoded() ? 1L : 0L);
    // Of a redirect nobody needs the body, and where nothing but the end of the connection would tell where it ends,
    // some servers keep the connection open.
    return IsToBeFollowed() ? headers_.EndIsKnown() : !headers_.LengthIsImpossible();
}

bool CurlTransfer::TakeBody(QByteArrayView bytes) {
    if (IsToBeFollowed()) { // nobody reads what a redirect says
        discarded_ += bytes.size();
        return discarded_ <= discardLimit;
    }
    const qint64 room = request_.BodyLimit - body_.size();
    const bool fits = bytes.size() <= room;
    if (!fits && !request_.CutBody) {
        tooLarge_ = true;
        return false;
    }
    if (!bodyBegun_) {
        curl_off_t expected = -1;
        LibCurl().easy_getinfo(easy_.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &expected);
        expectedSize_ = static_cast<qint64>(expected);
        bodyBegun_ = true;
    }
    body_.append(fits ? bytes : bytes.first(room));
    received_ = body_.size();
    cut_ = !fits;
    return fits;
}

int CurlTransfer::Status() const {
    long status = 0;
    LibCurl().easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
    return static_cast<int>(status);
}

// Empty behind a proxy, whose address it would be.
QString CurlTransfer::Peer() const {
    char* text = nullptr;
    LibCurl().easy_getinfo(easy_.get(), CURLINFO_PRIMARY_IP, &text);
    return text && request_.Via.Host.isEmpty() ? QString::fromLatin1(text) : QString();
}

bool CurlTransfer::IsToBeFollowed() const {
    return headers_.Ended() && !headers_.Location().isEmpty() && IsRedirect(Status());
}

void CurlTransfer::WatchTime() {
    const qint64 silence = request_.ReadTimeoutMs - sinceBytes_.elapsed();
    const qint64 whole = request_.TotalTimeoutMs > 0 ? request_.TotalTimeoutMs - sinceStart_.elapsed() : silence;
    const qint64 left = std::min(silence, whole);
    if (left > 0) {
        timer_.start(static_cast<int>(left));
        return;
    }
    session_.Loop().Remove(easy_.get());
    const qint64 waited = silence <= 0 ? request_.ReadTimeoutMs : request_.TotalTimeoutMs;
    Fail(HttpFailure::Other,
         (silence <= 0 ? u"no answer for %1 s"_s : u"no whole answer within %1 s"_s).arg(waited / 1000));
}

void CurlTransfer::Ended(CURLcode result) {
    response_.Status = Status();
    response_.FinalUrl = address_;
    response_.Peer = Peer();
    if (tooLarge_ || headers_.TooLarge())
        return Fail(HttpFailure::Other, u"the response is too large"_s);
    // Once its headers are there, what is wrong with the rest of a redirect is of no matter.
    if (IsToBeFollowed())
        return FollowRedirect();
    if (headers_.LengthIsImpossible())
        return Fail(HttpFailure::Other, u"the length that the response gives cannot be"_s);
    if (result != CURLE_OK && !refusal_.isEmpty())
        return Fail(HttpFailure::Other, refusal_);
    if (result == CURLE_URL_MALFORMAT)
        return Fail(HttpFailure::Other, u"not a valid address"_s);
    if (result != CURLE_OK && !cut_)
        return Fail(HttpFailure::Other,
                    QString::fromLocal8Bit(errorText_[0] != 0 ? errorText_ : LibCurl().easy_strerror(result)));
    // A connection that closes inside the headers is no response, though it looks like an empty one.
    if (!headers_.Ended() || response_.Status == 0)
        return Fail(HttpFailure::Other, u"the response ended inside its headers"_s);
    response_.ContentType = headers_.ContentType();
    response_.Body = std::exchange(body_, {});
    Finish();
}

void CurlTransfer::FollowRedirect() {
    if (redirects_.size() >= redirectLimit)
        return Fail(HttpFailure::Other, u"more than %1 redirects"_s.arg(redirectLimit));
    const QByteArray location = headers_.Location();
    // Encoded as the bytes that they are, whatever character set the server has in mind.
    const QString next = NormalAddress(ResolveAddress(address_, QString::fromLatin1(EncodedAddress(location))));
    // An absolute location is handed on as the server wrote it.
    const QString written = HeaderText(location);
    redirects_.push_back(SchemeOf(written).isEmpty() ? next : written);
    if (request_.Guarded)
        from_ = KindOfOrigin({address_, response_.Peer});
    CurlSession::Reset(easy_.get());
    Begin(next);
}

void CurlTransfer::Fail(HttpFailure failure, const QString& error) {
    response_.Failure = failure;
    response_.Error = error;
    body_.clear();
    Finish();
}

void CurlTransfer::Finish() {
    timer_.stop();
    done_ = true;
    // Also without anybody to call: it wakes whoever waits.
    QMetaObject::invokeMethod(
        &timer_,
        [this] {
            if (onDone_)
                onDone_();
        },
        Qt::QueuedConnection);
}

} // namespace Brindle
