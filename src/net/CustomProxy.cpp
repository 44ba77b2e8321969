#include "net/CustomProxy.h"

#include "toolkit/Markup.h"

#include <QRandomGenerator>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

int PortOf(const QString& text) {
    bool isNumber = false;
    const int port = text.toInt(&isNumber);
    return isNumber ? port : 80;
}

// Hands the single proxy of the settings to the browser.
void Apply(EmbeddedBrowser& browser, Settings& settings, const QString& userAgent) {
    if (!settings.rAuthentification) {
        settings.eUserName.clear();
        settings.ePassword.clear();
    }
    if (settings.eHost.isEmpty())
        return;
    browser.SetProxy({settings.eHost, PortOf(settings.ePort), settings.eUserName, settings.ePassword});
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
        const QStringList fields = SplitText(settings.eRandomProxies[picked], u":");
        settings.eHost = fields.value(0);
        settings.ePort = fields.value(1);
        settings.eUserName = fields.value(2);
        settings.ePassword = fields.value(3);
        Apply(browser, settings, userAgent);
    }
    return false;
}

} // namespace Brindle
