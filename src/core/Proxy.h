#pragma once

#include <QString>

#include <optional>

namespace Brindle {

struct ProxyLogin {
    QString UserName;
    QString Password;
};

/// What requests go through, those of the browser and those of the page fetcher. An empty host is no proxy; a port
/// beyond 1 to 65535 fails the request.
struct Proxy {
    QString Host;
    int Port = 80;
    std::optional<ProxyLogin> Login; ///< basic authentication
};

} // namespace Brindle
