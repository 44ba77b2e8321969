#pragma once

namespace Brindle {

/// How a directory and the websites it leads to are reached. A property of the directory's object.
enum class Way {
    Classic, ///< links as they stand, plain http, one TLS fallback, the agent of old
    Modern   ///< addresses resolved by RFC 3986, https on the ordinary client with its proxies, the browser's own agent
};

} // namespace Brindle
