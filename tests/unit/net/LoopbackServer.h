#pragma once

#include "Sockets.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace Brindle::Test {

/// A server on 127.0.0.1 that answers each request with the bytes that the test wants, whatever they are, and keeps the
/// requests as they arrived. Connections are closed after the answer.
class LoopbackServer {
public:
    /// What is sent; `Hang`: then nothing more happens until the client goes away or the server ends.
    struct Answer {
        QByteArray Bytes;
        bool Hang = false;
        qint64 RepeatUntil = 0; ///< the bytes after the first empty line are sent again and again up to this size
        int Trickle = 0;        ///< milliseconds before each single byte of `Bytes`; 0: they are sent at once
    };
    using Handler = std::function<Answer(const QByteArray& request)>;

    explicit LoopbackServer(Handler handler);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    int Port() const { return port_; }
    QString Base() const { return QStringLiteral("http://127.0.0.1:%1").arg(port_); }
    QList<QByteArray> Requests() const;

private:
    void Accept();
    void Serve(Socket connection);
    bool SendAll(Socket connection, const QByteArray& bytes) const;

    Handler handler_;
    int port_ = 0; // before the listener, which fills it
    Socket listener_ = noSocket;
    std::atomic<bool> ending_{false};
    mutable std::mutex mutex_;
    QList<QByteArray> requests_;
    std::vector<std::thread> connections_;
    std::thread acceptor_;
};

/// A port of 127.0.0.1 at which nobody listens.
int ClosedPort();

/// A response with a length.
QByteArray Http(const QByteArray& body, const QByteArray& status = "200 OK", const QByteArray& headers = {});

} // namespace Brindle::Test
