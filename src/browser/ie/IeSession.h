#pragma once

#include "core/EmbeddedBrowser.h"

namespace Brindle {

/// What every web browser control of this process sends as its user agent; the system's own when it is empty. False
/// when the system refuses.
bool SetSessionUserAgent(const QString& userAgent);

/// What the requests of every web browser control of this process go through: one proxy for all protocols, or straight
/// to the server when its host is empty. The login is not part of it. False when the system refuses.
bool SetSessionProxy(const Proxy& proxy);

} // namespace Brindle
