#pragma once

#include <QString>

namespace Brindle {

/// The fields of "host:port" or "host:port:user:password", the form in which the settings list proxies. What the text
/// lacks is empty, and what stands behind a fourth colon is of no matter.
struct ProxyText {
    QString Host;
    QString Port;
    QString UserName;
    QString Password;
    bool HasLogin = false; ///< it has all four fields
};

/// Takes a line of the list of proxies apart.
ProxyText ReadProxyText(const QString& line);

/// The port that a text names, 80 when it is no number.
int ReadProxyPort(const QString& text);

} // namespace Brindle
