#pragma once

#include "core/MessageLoop.h"
#include "core/PageOrigin.h"
#include "core/Proxy.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace Brindle {

enum class TlsUse {
    Refused, ///< an https address fails with `HttpFailure::NoTlsLayer`
    Only12,  ///< TLS 1.2 and nothing else
    From12   ///< TLS 1.2 and newer
};

/// One GET request with what follows from its redirects.
struct HttpRequest {
    QString Url;
    QStringList Headers; ///< "Name: value" each; they are sent to every host on the way
    QString UserAgent;
    Proxy Via;
    qint64 ReadTimeoutMs = 300'000; ///< time without a single byte, not total time
    qint64 TotalTimeoutMs = 0;      ///< time for the whole request with its redirects; 0: no limit
    TlsUse Tls = TlsUse::From12;
    QString CaFile;                ///< certificate authorities; empty: those of SSL_CERT_FILE, else the system's
    bool ReuseConnection = false;  ///< off: the connection is closed when the request has ended
    qint64 BodyLimit = 64LL << 20; ///< unpacked bytes; a longer body is a failure
    bool CutBody = false;          ///< on: of a longer body the rest is left out
    /// On: the request, and every redirect after it, goes only where the page before may lead (`MayLeadTo`), judged by
    /// the address that is really connected to; behind a proxy by what the host's text tells.
    bool Guarded = false;
    PageOrigin From; ///< of a guarded request: the page that leads to it
};

enum class HttpFailure { None, NoTlsLayer, Other };

struct HttpResponse {
    HttpFailure Failure = HttpFailure::None;
    QString Error;          ///< why it failed, without address and without credentials
    int Status = 0;         ///< HTTP status of the last response; 0 when there was none
    QByteArray ContentType; ///< value of the Content-Type header
    QByteArray Body;        ///< unpacked
    QString FinalUrl;       ///< after redirects
    QString Peer;           ///< numeric address of the server; empty behind a proxy

    /// A response came in whole, whatever its status.
    bool Complete() const { return Failure == HttpFailure::None; }
    /// The response is whole and its status a success (RFC 9110, section 15.3).
    bool Succeeded() const { return Complete() && Status >= 200 && Status < 300; }
};

/// Told how a request goes on. Messages may be handled inside.
struct HttpEvents {
    std::function<void(qint64 expectedSize)> WorkBegin; ///< the body begins; -1 when its size is unknown
    std::function<void(qint64 count)> Work;             ///< bytes of the body so far
    std::function<void()> WorkEnd;
    std::function<void(const QString& newLocation)> Redirect; ///< absolute; it is then followed
};

/// A request under way. Destroying it aborts it.
class HttpTransfer {
public:
    virtual ~HttpTransfer() = default;
    virtual bool Done() const = 0;
    /// Ends the request; the response says so.
    virtual void Abort() = 0;
    /// Valid once `Done`.
    virtual const HttpResponse& Response() const = 0;
    /// Hands on what has happened since the last call. To be called outside of the transfer's own messages.
    virtual void Report(const HttpEvents& events) = 0;
};

/// An HTTP/1.1 client with cookies that live as long as it does. Requests run while Qt's messages are handled, several
/// at a time if need be. Proxies of the environment have no effect, certificates are verified.
class HttpClient {
public:
    HttpClient();
    ~HttpClient();
    HttpClient(const HttpClient&) = delete;
    HttpClient& operator=(const HttpClient&) = delete;

    /// Starts a request; `onDone` is called from the message loop when it has ended, unless it is destroyed before.
    std::unique_ptr<HttpTransfer> Start(const HttpRequest& request, std::function<void()> onDone = {});

    /// Starts a request and handles messages until it has ended. Ends early when the program is ending or `Disconnect`
    /// is called meanwhile.
    HttpResponse Fetch(const HttpRequest& request, MessageLoop& loop, const HttpEvents& events = {});

    /// Aborts every `Fetch` under way.
    void Disconnect();

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace Brindle
