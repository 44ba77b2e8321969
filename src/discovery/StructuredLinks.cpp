#include "discovery/StructuredLinks.h"

#include "toolkit/Ascii.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// Where the path begins.
qsizetype EndOfHost(QStringView address) {
    const qsizetype begin = address.indexOf(u"://") + 3;
    const auto end = std::find_if(address.begin() + begin, address.end(),
                                  [](QChar c) { return c == u'/' || c == u'?' || c == u'#'; });
    return end - address.begin();
}

bool IsWeb(QStringView address) {
    return StartsWithFolded(address, u"http://") || StartsWithFolded(address, u"https://");
}

QStringView WithoutPort(QStringView host) {
    const qsizetype colon = host.lastIndexOf(u':');
    return colon > host.lastIndexOf(u']') ? host.first(colon) : host;
}

bool IsNumericOrLocal(QStringView host) {
    const QStringView name = WithoutPort(host);
    return name == u"localhost" || name.startsWith(u'[') ||
           std::all_of(name.begin(), name.end(), [](QChar c) { return c == u'.' || Ascii::IsDigit(c); });
}

// The part of a host that one owner registers: two labels, three under endings like "co.uk".
QStringView RegisteredName(QStringView host) {
    const qsizetype last = host.lastIndexOf(u'.');
    if (last <= 0)
        return host;
    const qsizetype second = host.lastIndexOf(u'.', last - 1);
    if (second <= 0)
        return host;
    const qsizetype length = last - second - 1;
    const bool isCountry = host.size() - last - 1 == 2;
    if (!isCountry || length > 3)
        return host.sliced(second + 1);
    const qsizetype third = host.lastIndexOf(u'.', second - 1);
    return host.sliced(third + 1);
}

// The host as it is written, without "www." and a port that goes without saying.
QStringView HostWithin(QStringView address) {
    if (!IsWeb(address))
        return {};
    QStringView host = address.first(EndOfHost(address)).sliced(address.indexOf(u"://") + 3);
    host = host.sliced(host.lastIndexOf(u'@') + 1);
    if (StartsWithFolded(host, u"www."))
        host = host.sliced(4);
    for (const QStringView usual : {u":80", u":443"})
        if (host.endsWith(usual))
            host.chop(usual.size());
    return host;
}

} // namespace

QString HostOfAddress(QStringView address) {
    return HostWithin(address).toString().toLower();
}

bool IsSameSite(QStringView one, QStringView other) {
    return IsSameHost(HostOfAddress(one), HostOfAddress(other));
}

bool IsSameHost(const QString& first, const QString& second) {
    if (first.isEmpty() || second.isEmpty())
        return false;
    if (first == second)
        return true;
    if (IsNumericOrLocal(first) || IsNumericOrLocal(second))
        return false;
    return RegisteredName(WithoutPort(first)) == RegisteredName(WithoutPort(second));
}

bool IsHomeAddress(QStringView address) {
    if (!IsWeb(address))
        return false;
    const QStringView rest =
        WithoutFragment(address).sliced(std::min(EndOfHost(address), WithoutFragment(address).size()));
    return rest.isEmpty() || rest == u"/";
}

QString WebAddress(const QString& base, QStringView href) {
    const QStringView trimmed = TrimmedView(href);
    if (trimmed.isEmpty())
        return {};
    const QString address =
        StartsWithFolded(trimmed, u"www.") ? QString(u"http://"_s + trimmed) : ResolveAddress(base, trimmed.toString());
    return HostWithin(address).isEmpty() || address.contains(u' ') ? QString() : address;
}

QString MailAddress(QStringView text) {
    QString address = Trim(text);
    if (StartsWithFolded(address, u"mailto:")) {
        address.remove(0, 7);
        address.truncate(std::find(address.cbegin(), address.cend(), u'?') - address.cbegin());
        address = QString::fromUtf8(QByteArray::fromPercentEncoding(address.toUtf8())).trimmed();
    }
    const qsizetype at = address.indexOf(u'@');
    const bool isOne = at > 0 && at + 1 < address.size() &&
                       std::none_of(address.cbegin(), address.cend(), [](QChar c) { return c.isSpace() || c == u'/'; });
    return isOne ? address : QString();
}

} // namespace Brindle
