#pragma once

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace Brindle::Test {

// Both systems have the same sockets under somewhat different names.
#ifdef Q_OS_WIN
using Socket = SOCKET;
constexpr int socketFlags = 0;
constexpr int sendFlags = 0;
using SendSize = int;
inline int CloseSocket(Socket socket) {
    return closesocket(socket);
}
inline int Poll(WSAPOLLFD* waiting, int milliseconds) {
    return WSAPoll(waiting, 1, milliseconds);
}
using PollEntry = WSAPOLLFD;
using SocketTimeout = DWORD;
inline SocketTimeout TimeoutOf(int seconds) {
    return static_cast<DWORD>(seconds) * 1000;
}
#else
using Socket = int;
constexpr int socketFlags = SOCK_CLOEXEC;
using SendSize = size_t;
constexpr int sendFlags = MSG_NOSIGNAL;
inline int CloseSocket(Socket socket) {
    return close(socket);
}
inline int Poll(pollfd* waiting, int milliseconds) {
    return poll(waiting, 1, milliseconds);
}
using PollEntry = pollfd;
using SocketTimeout = timeval;
inline SocketTimeout TimeoutOf(int seconds) {
    return {seconds, 0};
}
#endif

constexpr Socket noSocket = static_cast<Socket>(-1);

/// A socket that listens on a free port of 127.0.0.1. Throws std::runtime_error when there is none.
Socket ListenOnLoopback(int& port);

/// The next connection of a listening socket, or `noSocket`.
Socket AcceptConnection(Socket listener);

/// From now on it takes and gives what it can and returns.
void MakeNonBlocking(Socket socket);

/// Whether there is something to read or room to write within the time.
bool Readable(Socket socket, int milliseconds);
bool Writable(Socket socket, int milliseconds);

} // namespace Brindle::Test
