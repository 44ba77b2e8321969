#include "toolkit/PageAddress.h"

#include "toolkit/Text.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

bool IsLetter(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool IsWeb(QStringView scheme) {
    return scheme == u"http" || scheme == u"https";
}

qsizetype SchemeLength(QStringView address) {
    if (address.isEmpty() || !IsLetter(address.front()))
        return 0;
    const auto end = std::find_if_not(address.begin(), address.end(), [](QChar c) {
        return IsLetter(c) || (c >= u'0' && c <= u'9') || c == u'+' || c == u'-' || c == u'.';
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
