#include "net/ServerTrust.h"

#include <QHash>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace Brindle {

namespace {

QHash<QString, QString>& Authorities() {
    static QHash<QString, QString> authorities;
    return authorities;
}

// "127.0.0.1:40123"; empty for other addresses.
QString ServerOf(const QString& url) {
    if (!url.startsWith(u"https://127.0.0.1:"_s, Qt::CaseInsensitive))
        return {};
    const QUrl address(url);
    return address.host() + u':' + QString::number(address.port(443));
}

} // namespace

void TrustServer(const QString& url, const QString& authorityFile) {
    if (const QString server = ServerOf(url); !server.isEmpty())
        Authorities().insert(server, authorityFile);
}

QString AuthorityOf(const QString& url) {
    return Authorities().isEmpty() ? QString() : Authorities().value(ServerOf(url));
}

} // namespace Brindle
