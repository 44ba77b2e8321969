#pragma once

#include "core/EmbeddedBrowser.h"
#include "core/Settings.h"

#include <functional>

namespace Brindle {

/// The user agent of the embedded browser, unless the deployment file gives another.
QString BrowserUserAgent();

/// Applies the proxy of the settings to the embedded browser, and changes the settings, so that they hold what is in
/// force: with a list of proxies one of them is picked at random and takes the place of the single proxy, and without
/// authentication user name and password are cleared. The settings dialog shows it and the next save keeps it.
/// `random` gives a whole number from 0 to its argument - 1. Always false.
bool SetCustomProxy(EmbeddedBrowser& browser, Settings& settings, const QString& userAgent = BrowserUserAgent(),
                    const std::function<qint32(qint32)>& random = {});

/// What `SetCustomProxy` gave the browser last, as the settings have it since; without a host: none.
Proxy ProxyInForce(const Settings& settings);

} // namespace Brindle
