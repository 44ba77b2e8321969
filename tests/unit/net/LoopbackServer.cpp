#include "LoopbackServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace Brindle::Test {

namespace {

int Listen(int& port) {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (bind(listener, reinterpret_cast<sockaddr*>(&address), length) != 0 || listen(listener, 64) != 0)
        throw std::runtime_error("no port is free");
    getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
    port = ntohs(address.sin_port);
    return listener;
}

} // namespace

LoopbackServer::LoopbackServer(Handler handler) : handler_(std::move(handler)), listener_(Listen(port_)) {
    acceptor_ = std::thread([this] { Accept(); });
}

LoopbackServer::~LoopbackServer() {
    ending_ = true;
    acceptor_.join();
    close(listener_);
    for (std::thread& connection : connections_)
        connection.join();
}

QList<QByteArray> LoopbackServer::Requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

void LoopbackServer::Accept() {
    while (!ending_) {
        pollfd waiting{listener_, POLLIN, 0};
        if (poll(&waiting, 1, 10) <= 0)
            continue;
        const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection >= 0)
            connections_.emplace_back([this, connection] { Serve(connection); });
    }
}

bool LoopbackServer::SendAll(int connection, const QByteArray& bytes) const {
    qsizetype sent = 0;
    while (sent < bytes.size() && !ending_) {
        pollfd waiting{connection, POLLOUT, 0};
        if (poll(&waiting, 1, 10) <= 0)
            continue;
        const ssize_t count = send(connection, bytes.constData() + sent, static_cast<size_t>(bytes.size() - sent),
                                   MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0)
            return false;
        sent += count;
    }
    return sent == bytes.size();
}

void LoopbackServer::Serve(int connection) {
    QByteArray request;
    char buffer[4096];
    while (!ending_ && !request.contains("\r\n\r\n")) {
        pollfd waiting{connection, POLLIN, 0};
        if (poll(&waiting, 1, 10) <= 0)
            continue;
        const ssize_t count = recv(connection, buffer, sizeof buffer, 0);
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
        pollfd waiting{connection, POLLIN, 0};
        if (poll(&waiting, 1, 10) > 0 && recv(connection, buffer, sizeof buffer, 0) <= 0)
            break;
    }
    close(connection);
}

int ClosedPort() {
    int port = 0;
    close(Listen(port));
    return port;
}

QByteArray Http(const QByteArray& body, const QByteArray& status, const QByteArray& headers) {
    return "HTTP/1.1 " + status + "\r\n" + headers + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" +
           body;
}

} // namespace Brindle::Test
