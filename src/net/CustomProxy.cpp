#include "net/CustomProxy.h"

#include "net/ProxyText.h"

#include <QRandomGenerator>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

Proxy SingleProxy(const Settings& settings) {
    Proxy proxy{settings.eHost, ReadProxyPort(settings.ePort), {}};
    if (!settings.eUserName.isEmpty())
        proxy.Login = {settings.eUserName, settings.ePassword};
    return proxy;
}

// Hands the single proxy of the settings to the browser. Without authentication the login is forgotten for good: what
// the settings hold is what is in force, so neither the dialog nor the next save brings back one that is not used.
void Apply(EmbeddedBrowser& browser, Settings& settings, const QString& userAgent) {
    if (!settings.rAuthentification) {
        settings.eUserName.clear();
        settings.ePassword.clear();
    }
    if (settings.eHost.isEmpty())
        return;
    browser.SetProxy(SingleProxy(settings));
    browser.SetUserAgent(userAgent);
}

bool WantsSingleProxy(const Settings& settings) {
    return settings.rUseProxy && !settings.eHost.isEmpty() && !settings.ePort.isEmpty();
}

bool WantsRandomProxy(const Settings& settings) {
    return settings.rRandomProxy && !settings.eRandomProxies.isEmpty();
}

} // namespace

QString BrowserUserAgent() {
    return u"Mozilla/4.0 (compatible; MSIE 7.0; Windows NT 6.0; Trident/5.0)"_s;
}

bool SetCustomProxy(EmbeddedBrowser& browser, Settings& settings, const QString& userAgent,
                    const std::function<qint32(qint32)>& random) {
    browser.SetProxy({});
    browser.SetUserAgent(userAgent);
    if (WantsSingleProxy(settings))
        Apply(browser, settings, userAgent);
    if (WantsRandomProxy(settings)) {
        const auto count = static_cast<qint32>(settings.eRandomProxies.size());
        const qint32 picked = random ? random(count) : QRandomGenerator::global()->bounded(count);
        const ProxyText entry = ReadProxyText(settings.eRandomProxies[picked]);
        settings.eHost = entry.Host;
        settings.ePort = entry.Port;
        settings.eUserName = entry.UserName;
        settings.ePassword = entry.Password;
        Apply(browser, settings, userAgent);
    }
    return false;
}

Proxy ProxyInForce(const Settings& settings) {
    return WantsSingleProxy(settings) || WantsRandomProxy(settings) ? SingleProxy(settings) : Proxy();
}

} // namespace Brindle
