#include "net/CustomProxy.h"

#include "net/ProxyText.h"

#include <QRandomGenerator>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// Hands the single proxy of the settings to the browser. Without authentication the login is forgotten for good: what
// the settings hold is what is in force, so neither the dialog nor the next save brings back one that is not used.
void Apply(EmbeddedBrowser& browser, Settings& settings, const QString& userAgent) {
    if (!settings.rAuthentification) {
        settings.eUserName.clear();
        settings.ePassword.clear();
    }
    if (settings.eHost.isEmpty())
        return;
    Proxy proxy{settings.eHost, ReadProxyPort(settings.ePort), {}};
    if (!settings.eUserName.isEmpty())
        proxy.Login = {settings.eUserName, settings.ePassword};
    browser.SetProxy(proxy);
    browser.SetUserAgent(userAgent);
}

} // namespace

QString BrowserUserAgent() {
    return u"Mozilla/4.0 (compatible; MSIE 7.0; Windows NT 6.0; Trident/5.0)"_s;
}

bool SetCustomProxy(EmbeddedBrowser& browser, Settings& settings, const QString& userAgent,
                    const std::function<qint32(qint32)>& random) {
    browser.SetProxy({});
    browser.SetUserAgent(userAgent);
    if (settings.rUseProxy && !settings.eHost.isEmpty() && !settings.ePort.isEmpty())
        Apply(browser, settings, userAgent);
    if (settings.rRandomProxy && !settings.eRandomProxies.isEmpty()) {
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

} // namespace Brindle
