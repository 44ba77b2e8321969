#pragma once

#include "net/AddressGuard.h"
#include "net/CurlSession.h"
#include "net/HttpClient.h"
#include "net/ResponseHeaders.h"

#include <QElapsedTimer>
#include <QTimer>

#include <vector>

namespace Brindle {

/// One request with its redirects, each of them a transfer of libcurl of its own.
class CurlTransfer : public HttpTransfer {
public:
    CurlTransfer(CurlSession& session, HttpRequest request, std::function<void()> onDone);
    ~CurlTransfer() override;
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    bool Done() const override { return done_; }
    void Abort() override;
    const HttpResponse& Response() const override { return response_; }
    void Report(const HttpEvents& events) override;

private:
    void Begin(const QString& address);
    void Configure();
    void ConfigureTls();
    void ConfigureProxy();
    void ConfigureGuard();
    template <typename T>
    void Set(CURLoption option, T value) {
        LibCurl().easy_setopt(easy_.get(), option, value);
    }

    static size_t OnHeader(const char* data, size_t size, size_t count, void* self);
    static size_t OnBody(const char* data, size_t size, size_t count, void* self);
    static curl_socket_t OpenSocket(void* self, curlsocktype purpose, curl_sockaddr* address);
    static int BeforeRequest(void* self, char* peer, char* own, int peerPort, int ownPort);
    bool MayConnectTo(const std::optional<NumericAddress>& address, const QString& shown);
    bool TakeHeader(QByteArrayView line);
    bool TakeBody(QByteArrayView bytes);
    int Status() const;
    QString Peer() const;
    bool IsToBeFollowed() const;

    void WatchTime();
    void Ended(CURLcode result);
    void FollowRedirect();
    void Fail(HttpFailure failure, const QString& error);
    void Finish();

    CurlSession& session_;
    HttpRequest request_;
    std::function<void()> onDone_;
    CurlHandle easy_;
    CurlList headersSent_;
    QString address_; // of the hop that is under way
    char errorText_[CURL_ERROR_SIZE] = {};
    QTimer timer_;
    QElapsedTimer sinceStart_;
    QElapsedTimer sinceBytes_;

    std::optional<AddressKind> from_; // of a guarded hop: the kind of the place that leads to it
    QString refusal_;                 // why the hop may not go where it leads
    ResponseHeaders headers_;
    QByteArray body_;
    bool tooLarge_ = false;
    bool cut_ = false;     // the body is longer than what was asked for
    qint64 discarded_ = 0; // bytes of a redirect's body
    std::vector<QString> redirects_;
    bool done_ = false;
    HttpResponse response_;

    // What `Report` has to say and has said.
    bool bodyBegun_ = false;
    qint64 expectedSize_ = -1;
    qint64 received_ = 0;
    size_t reportedRedirects_ = 0;
    bool reportedBegin_ = false;
    qint64 reportedCount_ = 0;
    bool reportedEnd_ = false;
};

} // namespace Brindle
