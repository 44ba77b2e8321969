#include "toolkit/PageAddress.h"

#include "toolkit/Ascii.h"
#include "toolkit/Text.h"

#include <algorithm>
#include <cstring>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

bool IsWeb(QStringView scheme) {
    return scheme == u"http" || scheme == u"https";
}

qsizetype SchemeLength(QStringView address) {
    if (address.isEmpty() || !Ascii::IsLetter(address.front()))
        return 0;
    const auto end = std::find_if_not(address.begin(), address.end(), [](QChar c) {
        return Ascii::IsLetterOrDigit(c) || c == u'+' || c == u'-' || c == u'.';
    });
    return end != address.end() && *end == u':' ? end - address.begin() : 0;
}

// Where the path begins: behind scheme and host.
qsizetype PathBegin(QStringView address) {
    const qsizetype host = address.indexOf(u"://") + 3;
    for (qsizetype i = host; i < address.size(); ++i)
        if (address[i] == u'/' || address[i] == u'?' || address[i] == u'#')
            return i;
    return address.size();
}

QStringView PathAndQueryEnd(QStringView address) {
    const QStringView whole = WithoutFragment(address);
    const qsizetype query = whole.indexOf(u'?');
    return query < 0 ? whole : whole.first(query);
}

QStringView HostAndPort(QStringView address) {
    const qsizetype begin = address.indexOf(u"://") + 3;
    if (begin < 3)
        return {};
    const QStringView authority = address.first(PathBegin(address)).sliced(begin);
    return authority.sliced(authority.lastIndexOf(u'@') + 1);
}

// The blanks, tabs and line ends that browsers forgive, and the backslashes of the part before the query.
QString Mended(const QString& href) {
    QString mended = Trim(href);
    mended.removeIf([](QChar c) { return c == u'\t' || c == u'\n' || c == u'\r'; });
    for (QChar& c : mended) {
        if (c == u'?' || c == u'#')
            break;
        if (c == u'\\')
            c = u'/';
    }
    return mended;
}

// What may not stand in a path or a query.
bool NeedsEncoding(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte <= ' ' || byte >= 0x7F || std::strchr("\"<>\\^`{|}", c) != nullptr;
}

// Begins with "/" and so does what comes out (RFC 3986, section 5.2.4).
QString WithoutDotSegments(QStringView path) {
    QString out;
    out.reserve(path.size());
    while (!path.isEmpty()) {
        const qsizetype next = path.indexOf(u'/', 1);
        const QStringView segment = next < 0 ? path : path.first(next);
        path = next < 0 ? QStringView() : path.sliced(next);
        if (segment == u"/..")
            out.truncate(std::max<qsizetype>(0, out.lastIndexOf(u'/')));
        else if (segment != u"/.")
            out += segment;
        if (path.isEmpty() && (segment == u"/.." || segment == u"/."))
            out += u'/';
    }
    return out;
}

} // namespace

QString SchemeOf(QStringView address) {
    return address.first(SchemeLength(address)).toString().toLower();
}

QString TypedAddress(const QString& text) {
    const QString address = Trim(text);
    const QString scheme = SchemeOf(address);
    // "host:8080/x" has a host before the colon and a digit behind it.
    const qsizetype behind = scheme.size() + 1;
    const bool isPort = !scheme.isEmpty() && behind < address.size() && address[behind].isDigit();
    return address.isEmpty() || (!scheme.isEmpty() && !isPort) ? address : u"http://"_s + address;
}

QStringView WithoutFragment(QStringView address) {
    const qsizetype fragment = address.indexOf(u'#');
    return fragment < 0 ? address : address.first(fragment);
}

QString ResolveAddress(const QString& base, const QString& href) {
    // What most links of a page are: a path of this server with nothing to mend.
    if (href.startsWith(u'/') && !href.startsWith(u"//") &&
        std::all_of(href.begin(), href.end(), [](QChar c) { return c > u' ' && c < u'\x7F' && c != u'\\'; })) {
        const QStringView path = PathAndQueryEnd(base);
        return path.first(PathBegin(path)) + href;
    }
    // Or a whole address of the web.
    if ((StartsWithFolded(href, u"https://") || StartsWithFolded(href, u"http://")) &&
        std::all_of(href.begin(), href.end(), [](QChar c) { return c > u' ' && c < u'\x7F' && c != u'\\'; }))
        return href;
    const QString scheme = SchemeOf(Trim(href));
    if (!scheme.isEmpty() && !IsWeb(scheme))
        return Trim(href);
    QString link = Mended(href);
    if (!scheme.isEmpty()) {
        const QStringView rest = QStringView(link).sliced(scheme.size() + 1);
        if (rest.startsWith(u"//"))
            return link;
        // "http:page" is a page beside this one.
        if (scheme != SchemeOf(base))
            return scheme + u"://" + rest;
        link = rest.toString();
    }
    if (link.isEmpty())
        return WithoutFragment(base).toString();
    if (link.startsWith(u"//"))
        return SchemeOf(base) + u':' + link;
    if (link.front() == u'#')
        return WithoutFragment(base) + link;
    const QStringView path = PathAndQueryEnd(base);
    if (link.front() == u'?')
        return path + link;
    const qsizetype root = PathBegin(path);
    if (link.front() == u'/')
        return path.first(root) + link;
    const qsizetype slash = path.lastIndexOf(u'/');
    const QStringView folder = path.first(std::max(slash + 1, root));
    return folder.endsWith(u'/') ? QString(folder + link) : QString(folder + u'/' + link);
}

QByteArray EncodedAddress(const QByteArray& address) {
    static constexpr char digits[] = "0123456789ABCDEF";
    qsizetype at = 0;
    const qsizetype slashes = address.indexOf("//");
    if (slashes == 0 || (slashes > 0 && SchemeLength(QString::fromLatin1(address.first(slashes))) == slashes - 1)) {
        at = slashes + 2;
        while (at < address.size() && std::strchr("/?#", address[at]) == nullptr)
            ++at;
    }
    QByteArray encoded = address.first(at);
    encoded.reserve(address.size());
    for (; at < address.size(); ++at) {
        if (NeedsEncoding(address[at])) {
            const auto byte = static_cast<unsigned char>(address[at]);
            encoded.append('%').append(digits[byte >> 4]).append(digits[byte & 15]);
        } else {
            encoded.append(address[at]);
        }
    }
    return encoded;
}

QString NormalAddress(const QString& address) {
    const QString encoded = QString::fromUtf8(EncodedAddress(address.toUtf8()));
    const QString scheme = SchemeOf(encoded);
    QStringView rest = QStringView(encoded).sliced(scheme.isEmpty() ? 0 : scheme.size() + 1);
    if (!IsWeb(scheme) || !rest.startsWith(u"//"))
        return encoded;
    const auto endOf = [&rest](QStringView ends, qsizetype from) {
        while (from < rest.size() && !ends.contains(rest[from]))
            ++from;
        return from;
    };
    const qsizetype pathBegin = endOf(u"/?#", 2);
    const qsizetype pathEnd = endOf(u"?#", pathBegin);
    const QStringView path = rest.sliced(pathBegin, pathEnd - pathBegin);
    return scheme + u':' + rest.first(pathBegin) + (path.isEmpty() ? u"/"_s : WithoutDotSegments(path)) +
           rest.sliced(pathEnd);
}

QString ShownAddress(const QString& address) {
    const qsizetype host = address.indexOf(u"://") + 3;
    if (host < 3)
        return address;
    const qsizetype at = QStringView(address).first(PathBegin(address)).lastIndexOf(u'@');
    return at < host ? address : address.first(host) + address.sliced(at + 1);
}

QString HostOf(const QString& address) {
    const QStringView host = HostAndPort(address);
    const qsizetype bracket = host.indexOf(u']');
    const qsizetype colon = host.indexOf(u':', std::max<qsizetype>(bracket, 0));
    return (colon < 0 ? host : host.first(colon)).toString();
}

QString ServerOf(const QString& address) {
    const QString scheme = SchemeOf(address);
    QString host = HostAndPort(address).toString().toLower();
    for (const QStringView port : {scheme == u"https" ? QStringView(u":443") : QStringView(u":80"), QStringView(u":")})
        if (host.endsWith(port)) {
            host.chop(port.size());
            break;
        }
    return scheme + u"://" + host;
}

QString RefererFor(const QString& from, const QString& to) {
    if (!IsWeb(SchemeOf(from)) || (SchemeOf(from) == u"https" && SchemeOf(to) != u"https"))
        return {};
    const QStringView origin = QStringView(from).first(PathBegin(from));
    if (origin.contains(u'@'))
        return {};
    const bool sameOrigin = QStringView(to).first(PathBegin(to)).compare(origin, Qt::CaseInsensitive) == 0;
    return sameOrigin ? WithoutFragment(from).toString() : origin + u'/';
}

} // namespace Brindle
