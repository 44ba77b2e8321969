#include "browser/ie/IeSession.h"

#include <ole2.h>
#include <urlmon.h>
#include <wininet.h>

namespace Brindle {

namespace {

QByteArray UserAgentInForce() {
    QByteArray text(1024, '\0');
    auto size = static_cast<DWORD>(text.size());
    return SUCCEEDED(ObtainUserAgentString(0, text.data(), &size)) ? QByteArray(text.constData()) : QByteArray();
}

} // namespace

bool SetSessionUserAgent(const QString& userAgent) {
    static const QByteArray systemsOwn = UserAgentInForce();
    QByteArray text = userAgent.isEmpty() ? systemsOwn : userAgent.toLatin1();
    return SUCCEEDED(UrlMkSetSessionOption(URLMON_OPTION_USERAGENT, text.data(), static_cast<DWORD>(text.size()), 0));
}

bool SetSessionProxy(const Proxy& proxy) {
    // The texts are of 8 bits here, whatever the headers say.
    const QByteArray server = (proxy.Host + u':' + QString::number(proxy.Port)).toLocal8Bit();
    INTERNET_PROXY_INFO info{};
    info.dwAccessType = INTERNET_OPEN_TYPE_DIRECT;
    if (!proxy.Host.isEmpty()) {
        info.dwAccessType = INTERNET_OPEN_TYPE_PROXY;
        info.lpszProxy = reinterpret_cast<LPCTSTR>(server.constData());
    }
    return SUCCEEDED(UrlMkSetSessionOption(INTERNET_OPTION_PROXY, &info, sizeof info, 0));
}

} // namespace Brindle
