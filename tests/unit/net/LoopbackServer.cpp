#include "LoopbackServer.h"

namespace Brindle::Test {

LoopbackServer::LoopbackServer(Handler handler) : handler_(std::move(handler)), listener_(ListenOnLoopback(port_)) {
    acceptor_ = std::thread([this] { Accept(); });
}

LoopbackServer::~LoopbackServer() {
    ending_ = true;
    acceptor_.join();
    CloseSocket(listener_);
    for (std::thread& connection : connections_)
        connection.join();
}

QList<QByteArray> LoopbackServer::Requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

void LoopbackServer::Accept() {
    while (!ending_) {
        if (!Readable(listener_, 10))
            continue;
        const Socket connection = AcceptConnection(listener_);
        if (connection != noSocket)
            connections_.emplace_back([this, connection] { Serve(connection); });
    }
}

bool LoopbackServer::SendAll(Socket connection, const QByteArray& bytes) const {
    qsizetype sent = 0;
    while (sent < bytes.size() && !ending_) {
        if (!Writable(connection, 10))
            continue;
        const auto count =
            send(connection, bytes.constData() + sent, static_cast<SendSize>(bytes.size() - sent), sendFlags);
        if (count < 0)
            return false;
        sent += count;
    }
    return sent == bytes.size();
}

void LoopbackServer::Serve(Socket connection) {
    MakeNonBlocking(connection);
    QByteArray request;
    char buffer[4096];
    while (!ending_ && !request.contains("\r\n\r\n")) {
        if (!Readable(connection, 10))
            continue;
        const auto count = recv(connection, buffer, sizeof buffer, 0);
        if (count <= 0)
            break;
        request.append(buffer, count);
    }
    {
        const std::lock_guard lock(mutex_);
        requests_.append(request);
    }
    const Answer answer = handler_(request);
    bool open = true;
    if (answer.Trickle > 0) {
        for (qsizetype i = 0; open && !ending_ && i < answer.Bytes.size(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(answer.Trickle));
            open = SendAll(connection, answer.Bytes.sliced(i, 1));
        }
    } else {
        open = SendAll(connection, answer.Bytes);
    }
    const QByteArray body = answer.Bytes.sliced(answer.Bytes.indexOf("\r\n\r\n") + 4);
    for (qint64 sent = body.size(); open && !ending_ && sent < answer.RepeatUntil; sent += body.size())
        open = SendAll(connection, body);
    while (answer.Hang && open && !ending_) {
        if (Readable(connection, 10) && recv(connection, buffer, sizeof buffer, 0) <= 0)
            break;
    }
    CloseSocket(connection);
}

int ClosedPort() {
    int port = 0;
    CloseSocket(ListenOnLoopback(port));
    return port;
}

QByteArray Http(const QByteArray& body, const QByteArray& status, const QByteArray& headers) {
    return "HTTP/1.1 " + status + "\r\n" + headers + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" +
           body;
}

} // namespace Brindle::Test
