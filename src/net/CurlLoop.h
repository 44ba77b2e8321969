#pragma once

#include "net/CurlHandles.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>

class QSocketNotifier;

namespace Brindle {

/// libcurl's multi interface on Qt's event loop: its sockets are watched by socket notifiers and its time-outs by a
/// timer, so transfers go on whenever messages are handled and nothing polls.
class CurlLoop : public QObject {
    Q_OBJECT

public:
    CurlLoop();
    ~CurlLoop() override;

    /// Starts a transfer; `onDone` is called with its result when it has ended, outside of libcurl, `onReceived`
    /// whenever bytes have arrived, be they of an answer's headers or body.
    void Add(CURL* easy, std::function<void(CURLcode)> onDone, std::function<void()> onReceived);
    /// Takes a transfer out, ended or not.
    void Remove(CURL* easy);

private:
    struct Transfer {
        std::function<void(CURLcode)> OnDone;
        std::function<void()> OnReceived;
    };
    struct Watch {
        CURL* Easy = nullptr;
        std::unique_ptr<QSocketNotifier> Read;
        std::unique_ptr<QSocketNotifier> Write;
    };
    static int OnSocket(CURL* easy, curl_socket_t socket, int what, void* self, void* socketData);
    static int OnTimer(CURLM* multi, long timeoutMs, void* self);
    void Act(curl_socket_t socket, int events);
    void DeliverResults();

    CurlMultiHandle multi_;
    QTimer timer_;
    std::map<curl_socket_t, Watch> watches_;
    std::map<CURL*, Transfer> running_;
};

} // namespace Brindle
