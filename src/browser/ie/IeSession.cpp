#include "IeSession.h"

#include <ole2.h>
#include <urlmon.h>
#include <wininet.h>

namespace Brindle {

bool SetSessionUserAgent(const QString& userAgent) {
    if (userAgent.isEmpty())
        return SUCCEEDED(UrlMkSetSessionOption(URLMON_OPTION_USERAGENT_REFRESH, nullptr, 0, 0));
    QByteArray text = userAgent.toLatin1();
    return SUCCEEDED(UrlMkSetSessionOption(URLMON_OPTION_USERAGENT, text.data(), static_cast<DWORD>(text.size()), 0));
}

bool SetSessionProxy(const BrowserProxy& proxy) {
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
