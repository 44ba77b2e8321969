#include "Sockets.h"

#include <stdexcept>

namespace Brindle::Test {

namespace {

#ifdef Q_OS_WIN
struct SocketLibrary {
    SocketLibrary() {
        WSADATA data;
        WSAStartup(MAKEWORD(2, 2), &data);
    }
    ~SocketLibrary() { WSACleanup(); }
};
#else
struct SocketLibrary {};
#endif

bool Ready(Socket socket, short events, int milliseconds) {
    PollEntry waiting{socket, events, 0};
    return Poll(&waiting, milliseconds) > 0;
}

} // namespace

Socket ListenOnLoopback(int& port) {
    [[maybe_unused]] static const SocketLibrary library;
    const Socket listener = socket(AF_INET, SOCK_STREAM | socketFlags, 0);
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

Socket AcceptConnection(Socket listener) {
#ifdef Q_OS_WIN
    return accept(listener, nullptr, nullptr);
#else
    return accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
#endif
}

void MakeNonBlocking(Socket socket) {
#ifdef Q_OS_WIN
    u_long on = 1;
    ioctlsocket(socket, FIONBIO, &on);
#else
    fcntl(socket, F_SETFL, O_NONBLOCK);
#endif
}

bool Readable(Socket socket, int milliseconds) {
    return Ready(socket, POLLIN, milliseconds);
}

bool Writable(Socket socket, int milliseconds) {
    return Ready(socket, POLLOUT, milliseconds);
}

} // namespace Brindle::Test
