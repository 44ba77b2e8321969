#include "net/HttpClient.h"

#include "net/CurlLoop.h"
#include "toolkit/Text.h"

#include <QElapsedTimer>
#include <QStringDecoder>

#include <algorithm>
#include <cstring>
#include <optional>
#include <set>
#include <vector>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int redirectLimit = 20;
constexpr size_t headerLimit = size_t{1} << 20;
constexpr qint64 discardLimit = 1 << 20;

struct UrlCloser {
    void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using Url = std::unique_ptr<CURLU, UrlCloser>;

bool HasScheme(const QByteArray& location) {
    const qsizetype colon = location.indexOf(':');
    return colon > 0 && std::all_of(location.begin(), location.begin() + colon, [](char c) {
               return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' ||
                      c == '-' || c == '.';
           });
}

// What may not stand in a path or a query (RFC 3986, appendix A). A "%" is taken to begin what is encoded already.
bool NeedsEncoding(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte <= ' ' || byte >= 0x7F || std::strchr("\"<>\\^`{|}", c) != nullptr;
}

// The address with path and query percent-encoded, non-ASCII characters as the bytes that they are. The library's own
// encoding writes "+" for a blank in a query, and small hexadecimal digits.
QByteArray Encoded(const QByteArray& address) {
    static constexpr char digits[] = "0123456789ABCDEF";
    qsizetype at = 0;
    if (const qsizetype slashes = address.indexOf("//");
        slashes == 0 || (slashes > 0 && HasScheme(address) && address.indexOf(':') == slashes - 1)) {
        at = slashes + 2;
        while (at < address.size() && std::strchr("/?#", address[at]) == nullptr)
            ++at;
    }
    QByteArray encoded = address.first(at);
    for (; at < address.size(); ++at) {
        if (NeedsEncoding(address[at])) {
            const auto byte = static_cast<unsigned char>(address[at]);
            encoded.append('%').append(digits[byte >> 4]).append(digits[byte & 15]);
        } else {
            encoded.append(address[at]);
        }
    }
    return encoded;
}

// The parts of an address, a relative one against the base. Null when it is no address.
Url ParseUrl(const QByteArray& address, const Url& base = nullptr) {
    Url url(base ? curl_url_dup(base.get()) : curl_url());
    // The library would set a relative address behind the fragment, as a part of it (RFC 3986, section 5.2.2).
    if (base)
        curl_url_set(url.get(), CURLUPART_FRAGMENT, nullptr, 0);
    if (curl_url_set(url.get(), CURLUPART_URL, Encoded(address).constData(), CURLU_NON_SUPPORT_SCHEME) != CURLUE_OK)
        return nullptr;
    return url;
}

QByteArray Part(const Url& url, CURLUPart part) {
    char* text = nullptr;
    if (curl_url_get(url.get(), part, &text, 0) != CURLUE_OK)
        return {};
    QByteArray result(text);
    curl_free(text);
    return result;
}

// Whether a Content-Encoding names nothing but codings that there are none of. Some servers put a character set there;
// such a body is read as it stands, as browsers do.
bool NamesNoCoding(const QByteArray& contentEncoding) {
    const QList<QByteArray> names = contentEncoding.toLower().split(',');
    return std::none_of(names.begin(), names.end(), [](const QByteArray& name) {
        static const std::set<QByteArray> codings{"gzip", "x-gzip", "deflate", "br", "zstd", "compress", "x-compress"};
        return codings.count(name.trimmed()) > 0;
    });
}

// UTF-8 or, as header values were long ago, Latin-1.
QString HeaderText(const QByteArray& value) {
    QStringDecoder decode(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QString text = decode(value);
    return decode.hasError() ? QString::fromLatin1(value) : text;
}

bool IsRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

void Reset(CURL* easy) {
    // The library's own reset forgets the list of cookie files without releasing it. The cookies are shared and stay.
    curl_easy_setopt(easy, CURLOPT_COOKIEFILE, nullptr);
    curl_easy_setopt(easy, CURLOPT_SHARE, nullptr);
    curl_easy_reset(easy);
}

} // namespace

class HttpClient::Impl {
public:
    Impl() {
        cookies_ = curl_share_init();
        curl_share_setopt(cookies_, CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
    }
    ~Impl() {
        for (CURL* easy : spare_)
            curl_easy_cleanup(easy);
        curl_share_cleanup(cookies_);
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    CURL* TakeHandle() {
        if (spare_.empty())
            return curl_easy_init();
        CURL* const easy = spare_.back();
        spare_.pop_back();
        return easy;
    }
    void GiveBack(CURL* easy) {
        Reset(easy);
        spare_.push_back(easy);
    }

    class Transfer;
    CurlLoop loop_;
    CURLSH* cookies_;
    std::set<Transfer*> fetches_; // those that `Disconnect` ends

private:
    std::vector<CURL*> spare_;
};

class HttpClient::Impl::Transfer : public HttpTransfer {
public:
    Transfer(Impl& client, HttpRequest request, std::function<void()> onDone)
        : client_(client), request_(std::move(request)), onDone_(std::move(onDone)), easy_(client.TakeHandle()) {
        QObject::connect(&inactivity_, &QTimer::timeout, &inactivity_, [this] { CheckInactivity(); });
        inactivity_.setSingleShot(true);
        Begin(request_.Url.toUtf8());
    }

    ~Transfer() override {
        client_.loop_.Remove(easy_);
        client_.GiveBack(easy_);
        curl_slist_free_all(headers_);
    }
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    bool Done() const override { return done_; }
    void Abort() override {
        if (done_)
            return;
        client_.loop_.Remove(easy_);
        Fail(HttpFailure::Aborted, u"stopped"_s);
    }
    const HttpResponse& Response() const override { return response_; }

    void Report(const HttpEvents& events) override {
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

private:
    void Begin(const QByteArray& address) {
        url_ = ParseUrl(address);
        if (!url_)
            return Fail(HttpFailure::Other, u"not a valid address"_s);
        const QByteArray scheme = Part(url_, CURLUPART_SCHEME).toLower();
        if (scheme == "https" && !request_.AllowTls)
            return Fail(HttpFailure::NoTlsLayer, u"IOHandler: this client has no TLS layer"_s);
        if (scheme != "http" && scheme != "https")
            return Fail(HttpFailure::Other, u"not an HTTP address"_s);
        if (!request_.Proxy.Host.isEmpty() && (request_.Proxy.Port <= 0 || request_.Proxy.Port > 65535))
            return Fail(HttpFailure::Other, u"%1 is no proxy port"_s.arg(request_.Proxy.Port));
        Configure();
        StartResponse();
        activity_.start();
        inactivity_.start(static_cast<int>(request_.ReadTimeoutMs));
        client_.loop_.Add(
            easy_, [this](CURLcode result) { Ended(result); }, [this] { activity_.start(); });
    }

    template <typename T>
    void Set(CURLoption option, T value) {
        curl_easy_setopt(easy_, option, value);
    }

    void Configure() {
        Set(CURLOPT_CURLU, url_.get());
        Set(CURLOPT_NOSIGNAL, 1L);
        Set(CURLOPT_QUICK_EXIT, 1L); // an aborted request does not wait for the name server
        Set(CURLOPT_SHARE, client_.cookies_);
        Set(CURLOPT_COOKIEFILE, ""); // switches the cookie engine on
        Set(CURLOPT_FOLLOWLOCATION, 0L);
        Set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
        Set(CURLOPT_HTTP09_ALLOWED, 0L);
        Set(CURLOPT_ACCEPT_ENCODING, "");
        Set(CURLOPT_USERAGENT, request_.UserAgent.toUtf8().constData());
        if (!headers_)
            for (const QString& header : request_.Headers)
                headers_ = curl_slist_append(headers_, header.toUtf8().constData());
        Set(CURLOPT_HTTPHEADER, headers_);
        Set(CURLOPT_FORBID_REUSE, request_.ReuseConnection ? 0L : 1L);
        Set(CURLOPT_FRESH_CONNECT, request_.ReuseConnection ? 0L : 1L);
        Set(CURLOPT_SSL_VERIFYPEER, 1L);
        Set(CURLOPT_SSL_VERIFYHOST, 2L);
        if (request_.OnlyTls12)
            Set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2) | CURL_SSLVERSION_MAX_TLSv1_2);
        // The variable is the one that OpenSSL's own look-up obeys; the library goes past it.
        const QByteArray caFile =
            request_.CaFile.isEmpty() ? qgetenv("SSL_CERT_FILE") : QByteArray(request_.CaFile.toUtf8());
        if (!caFile.isEmpty())
            Set(CURLOPT_CAINFO, caFile.constData());
#ifdef Q_OS_WIN
        else
            Set(CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_NATIVE_CA)); // the system's certificate store
#endif
        ConfigureProxy();
        Set(CURLOPT_ERRORBUFFER, errorText_);
        errorText_[0] = 0;
        Set(CURLOPT_WRITEFUNCTION, &Transfer::OnBody);
        Set(CURLOPT_WRITEDATA, this);
        Set(CURLOPT_HEADERFUNCTION, &Transfer::OnHeader);
        Set(CURLOPT_HEADERDATA, this);
    }

    void ConfigureProxy() {
        const HttpProxy& proxy = request_.Proxy;
        Set(CURLOPT_NOPROXY, "");
        // An empty text, unlike none, also switches off the proxies of the environment.
        const QByteArray address = proxy.Host.isEmpty() ? QByteArray("") : "http://" + proxy.Host.toUtf8();
        Set(CURLOPT_PROXY, address.constData());
        if (proxy.Host.isEmpty())
            return;
        Set(CURLOPT_PROXYPORT, static_cast<long>(proxy.Port));
        if (!proxy.BasicAuthentication)
            return;
        Set(CURLOPT_PROXYAUTH, static_cast<long>(CURLAUTH_BASIC));
        // The library decodes what it is given here.
        const QByteArray login =
            proxy.UserName.toUtf8().toPercentEncoding() + ':' + proxy.Password.toUtf8().toPercentEncoding();
        Set(CURLOPT_PROXYUSERPWD, login.constData());
    }

    // What is known of a response belongs to the last one: redirects, proxies and interim responses come before it.
    void StartResponse() {
        headersEnded_ = false;
        headerBytes_ = 0;
        location_.clear();
        contentType_.clear();
        body_.clear();
        discarded_ = 0;
        tooLarge_ = false;
        bodyBegun_ = false;
        received_ = 0;
        reportedBegin_ = false;
        reportedCount_ = 0;
        reportedEnd_ = false;
    }

    static size_t OnHeader(const char* data, size_t size, size_t count, void* self) {
        auto* const transfer = static_cast<Transfer*>(self);
        const size_t length = size * count;
        transfer->headerBytes_ += length;
        if (transfer->headerBytes_ > headerLimit) {
            transfer->tooLarge_ = true;
            return 0;
        }
        const QByteArray line = QByteArray(data, static_cast<qsizetype>(length)).trimmed();
        QByteArray* const folded = std::exchange(transfer->foldable_, nullptr);
        if (line.startsWith("HTTP/"))
            transfer->StartHeaders();
        else if (line.isEmpty())
            return transfer->EndHeaders() ? length : 0;
        else if (folded && (*data == ' ' || *data == '\t'))
            // RFC 9112, section 5.2
            *(transfer->foldable_ = folded) = QByteArray(*folded + ' ' + line).trimmed();
        else if (const qsizetype colon = line.indexOf(':'); colon > 0 && !transfer->headersEnded_) {
            // What comes behind the headers is a trailer, which tells nothing of the body (RFC 9110, section 6.5.1).
            const QByteArray name = line.first(colon).trimmed().toLower();
            if (name == "location" && transfer->location_.isEmpty())
                *(transfer->foldable_ = &transfer->location_) = line.sliced(colon + 1).trimmed();
            else if (name == "content-type")
                *(transfer->foldable_ = &transfer->contentType_) = line.sliced(colon + 1).trimmed();
            else if (name == "content-length" || name == "transfer-encoding")
                transfer->endIsKnown_ = true;
            else if (name == "content-encoding") {
                transfer->encoded_ = transfer->encoded_ || !NamesNoCoding(line.sliced(colon + 1));
                transfer->Set(CURLOPT_HTTP_CONTENT_DECODING, transfer->encoded_ ? 1L : 0L);
            }
        }
        return length;
    }

    void StartHeaders() {
        headersEnded_ = false;
        endIsKnown_ = false;
        encoded_ = false;
        location_.clear();
        contentType_.clear();
    }

    // False when the rest of the response is not worth waiting for: it is a redirect, and nothing but the end of the
    // connection, which some servers keep open, would tell where its body ends.
    bool EndHeaders() {
        headersEnded_ = true;
        return endIsKnown_ || !IsToBeFollowed();
    }

    bool IsToBeFollowed() const {
        long status = 0;
        curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &status);
        return headersEnded_ && IsRedirect(static_cast<int>(status)) && !location_.isEmpty();
    }

    static size_t OnBody(const char* data, size_t size, size_t count, void* self) {
        auto* const transfer = static_cast<Transfer*>(self);
        const size_t length = size * count;
        if (transfer->IsToBeFollowed()) { // nobody reads what a redirect says
            transfer->discarded_ += static_cast<qint64>(length);
            return transfer->discarded_ <= discardLimit ? length : 0;
        }
        if (transfer->body_.size() + static_cast<qint64>(length) > transfer->request_.BodyLimit) {
            transfer->tooLarge_ = true;
            return 0;
        }
        if (!transfer->bodyBegun_) {
            curl_off_t expected = -1;
            curl_easy_getinfo(transfer->easy_, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &expected);
            transfer->expectedSize_ = static_cast<qint64>(expected);
            transfer->bodyBegun_ = true;
        }
        transfer->body_.append(data, static_cast<qsizetype>(length));
        transfer->received_ = transfer->body_.size();
        return length;
    }

    void CheckInactivity() {
        const qint64 left = request_.ReadTimeoutMs - activity_.elapsed();
        if (left > 0) {
            inactivity_.start(static_cast<int>(left));
            return;
        }
        client_.loop_.Remove(easy_);
        Fail(HttpFailure::Other, u"no answer for %1 s"_s.arg(request_.ReadTimeoutMs / 1000));
    }

    void Ended(CURLcode result) {
        long status = 0;
        curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &status);
        response_.Status = static_cast<int>(status);
        response_.FinalUrl = QString::fromUtf8(Part(url_, CURLUPART_URL));
        if (tooLarge_)
            return Fail(HttpFailure::Other, u"the response is too large"_s);
        // Once its headers are there, what is wrong with the rest of a redirect is of no matter.
        if (IsToBeFollowed())
            return FollowRedirect();
        if (result != CURLE_OK)
            return Fail(HttpFailure::Other,
                        QString::fromLocal8Bit(errorText_[0] != 0 ? errorText_ : curl_easy_strerror(result)));
        // A connection that closes inside the headers is no response, though it looks like an empty one.
        if (!headersEnded_ || status == 0)
            return Fail(HttpFailure::Other, u"the response ended inside its headers"_s);
        response_.ContentType = contentType_;
        response_.Body = std::exchange(body_, {});
        Finish();
    }

    void FollowRedirect() {
        if (redirects_.size() >= redirectLimit)
            return Fail(HttpFailure::Other, u"more than %1 redirects"_s.arg(redirectLimit));
        const Url next = ParseUrl(location_, url_);
        const QByteArray resolved = next ? Part(next, CURLUPART_URL) : QByteArray();
        // What cannot be followed, and an absolute location, is handed on as the server wrote it.
        redirects_.push_back(HeaderText(!next || HasScheme(location_) ? location_ : resolved));
        if (!next)
            return Fail(HttpFailure::Other, u"redirected to what is no address"_s);
        Reset(easy_);
        Begin(resolved);
    }

    void Fail(HttpFailure failure, const QString& error) {
        response_.Failure = failure;
        response_.Error = error;
        body_.clear();
        Finish();
    }

    void Finish() {
        inactivity_.stop();
        done_ = true;
        if (onDone_)
            QMetaObject::invokeMethod(
                &inactivity_, [this] { onDone_(); }, Qt::QueuedConnection);
        else
            QMetaObject::invokeMethod(
                &inactivity_, [] {}, Qt::QueuedConnection); // wakes whoever waits
    }

    Impl& client_;
    HttpRequest request_;
    std::function<void()> onDone_;
    CURL* easy_;
    Url url_;
    curl_slist* headers_ = nullptr;
    char errorText_[CURL_ERROR_SIZE] = {};
    QTimer inactivity_;
    QElapsedTimer activity_;

    bool headersEnded_ = false;
    bool endIsKnown_ = false;
    bool encoded_ = false;
    bool tooLarge_ = false;
    size_t headerBytes_ = 0;
    QByteArray location_;
    QByteArray contentType_;
    QByteArray* foldable_ = nullptr; // the header that the next line may continue
    QByteArray body_;
    qint64 discarded_ = 0; // bytes of a redirect's body
    std::vector<QString> redirects_;

    bool done_ = false;
    HttpResponse response_;

    bool bodyBegun_ = false;
    qint64 expectedSize_ = -1;
    qint64 received_ = 0;
    size_t reportedRedirects_ = 0;
    bool reportedBegin_ = false;
    qint64 reportedCount_ = 0;
    bool reportedEnd_ = false;
};

HttpClient::HttpClient() : impl_(std::make_unique<Impl>()) {}

HttpClient::~HttpClient() = default;

std::unique_ptr<HttpTransfer> HttpClient::Start(const HttpRequest& request, std::function<void()> onDone) {
    return std::make_unique<Impl::Transfer>(*impl_, request, std::move(onDone));
}

HttpResponse HttpClient::Fetch(const HttpRequest& request, MessageLoop& loop, const HttpEvents& events) {
    Impl::Transfer transfer(*impl_, request, {});
    impl_->fetches_.insert(&transfer);
    while (!transfer.Done()) {
        if (loop.Quitting()) {
            transfer.Abort();
            break;
        }
        loop.WaitForMessage(std::nullopt);
        transfer.Report(events);
    }
    transfer.Report(events);
    impl_->fetches_.erase(&transfer);
    return transfer.Response();
}

void HttpClient::Disconnect() {
    for (Impl::Transfer* transfer : impl_->fetches_)
        transfer->Abort();
}

QString ShownAddress(const QString& url) {
    const qsizetype host = url.indexOf(u"://") + 3;
    if (host < 3)
        return url;
    const auto hostEnd =
        std::find_if(url.begin() + host, url.end(), [](QChar c) { return c == u'/' || c == u'?' || c == u'#'; });
    const qsizetype at = QStringView(url).first(hostEnd - url.begin()).lastIndexOf(u'@');
    return at < host ? url : url.first(host) + url.sliced(at + 1);
}

} // namespace Brindle
