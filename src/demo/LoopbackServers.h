#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace httplib {
class Server;
}

namespace Brindle::Demo {

class DemoAuthority;

/// HTTP servers on free ports of 127.0.0.1. Each has one thread that accepts connections; all share a few that answer
/// them, created when they are needed.
class LoopbackServers {
public:
    LoopbackServers();
    ~LoopbackServers();

    /// Takes a free port; returns the base address, without a trailing slash. Connections wait until `Run`. Throws
    /// std::runtime_error when there is no port.
    QString Add();
    /// The same with https, with the certificate of `authority`, which must outlive the server.
    QString AddSecure(const DemoAuthority& authority);
    /// The server of a base address that `Add` returned, for its routes.
    httplib::Server& At(const QString& base);
    /// Begins to answer.
    void Run();
    /// Ends all servers and joins their threads. Nothing happens when they are not running.
    void Stop();

private:
    QString Take(std::unique_ptr<httplib::Server> server, QStringView scheme);

    struct Running;
    std::unique_ptr<Running> running_;
};

} // namespace Brindle::Demo
