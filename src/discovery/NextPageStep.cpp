#include "discovery/NextPage.h"
#include "toolkit/Ascii.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"

#include <QHash>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>
#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr auto pageKeys = std::to_array<QStringView>(
    {u"page",   u"p",       u"pg",          u"paged",       u"pageno",       u"pagenum",   u"pagenumber", u"page_no",
     u"pagina", u"pag",     u"seite",       u"sida",        u"side",         u"strana",    u"strona",     u"oldal",
     u"sayfa",  u"halaman", u"start",       u"offset",      u"from",         u"first",     u"skip",       u"startindex",
     u"pn",     u"pi",      u"curpage",     u"currentpage", u"current_page", u"pageindex", u"page_id",    u"cp",
     u"index",  u"startat", u"firstresult", u"startrow",    u"pageid",       u"b_start",   u"np",         u"xpage"});

bool IsPageKey(QStringView key) {
    const QString lower = key.toString().toLower();
    return std::find(pageKeys.begin(), pageKeys.end(), lower) != pageKeys.end() || lower.endsWith(u"page") ||
           lower.endsWith(u"pagina") || lower.endsWith(u"offset") || lower.startsWith(u"pagen") ||
           lower.endsWith(u"[page]") || lower.endsWith(u"-page") || lower.startsWith(u"page-");
}

int NumberIn(QStringView text) {
    bool isNumber = false;
    const int number = text.size() <= 7 ? text.toInt(&isNumber) : -1;
    return isNumber && number >= 0 ? number : -1;
}

struct Address {
    QStringView Host;
    QString Path;
    QHash<QString, QString> Query;
};

Address PartsOf(const QString& whole) {
    const QStringView address = WithoutFragment(whole);
    const qsizetype host = address.indexOf(u"://");
    Address parts;
    QStringView rest = host < 0 ? address : address.sliced(host + 3);
    const qsizetype query = rest.indexOf(u'?');
    if (query >= 0) {
        for (const QStringView pair : rest.sliced(query + 1).split(u'&', Qt::SkipEmptyParts)) {
            const qsizetype equals = pair.indexOf(u'=');
            const QString key = QUrl::fromPercentEncoding((equals < 0 ? pair : pair.first(equals)).toUtf8());
            parts.Query.insert(key,
                               equals < 0 ? QString() : QUrl::fromPercentEncoding(pair.sliced(equals + 1).toUtf8()));
            if (parts.Query.size() > 100)
                break;
        }
        rest = rest.first(query);
    }
    const qsizetype slash = rest.indexOf(u'/');
    parts.Host = slash < 0 ? rest : rest.first(slash);
    parts.Path = slash < 0 ? u"/"_s : rest.sliced(slash).toString();
    while (parts.Path.size() > 1 && parts.Path.endsWith(u'/'))
        parts.Path.chop(1);
    return parts;
}

// Addresses with one path: what differs in the query must be a page's number.
PageStep StepInQuery(const Address& own, const Address& other) {
    PageStep step;
    int others = 0;
    for (auto pair = other.Query.cbegin(); pair != other.Query.cend(); ++pair) {
        const auto before = own.Query.constFind(pair.key());
        if (before != own.Query.cend() && *before == *pair)
            continue;
        if (IsPageKey(pair.key()) && NumberIn(*pair) >= 0) {
            step.SameList = true;
            step.Number = NumberIn(*pair);
            step.OwnNumber = before == own.Query.cend() ? -1 : NumberIn(*before);
        } else if (before != own.Query.cend() && !before->isEmpty()) {
            ++others;
        }
    }
    if (others > 0)
        step.SameList = false;
    return step;
}

// The numbers of a path, and the path with a mark for each.
QString TemplateOf(const QString& path, std::vector<QStringView>& numbers) {
    QString shape;
    for (qsizetype i = 0; i < path.size();) {
        qsizetype end = i;
        while (end < path.size() && Ascii::IsDigit(path[end]))
            ++end;
        if (end > i) {
            numbers.push_back(QStringView(path).sliced(i, end - i));
            shape += u'#';
            i = end;
        } else {
            shape += path[i++];
        }
    }
    return shape;
}

bool IsDated(const QString& path) {
    static const QRegularExpression dated(u"/(19|20)\\d\\d(/|-|$)"_s);
    return dated.match(path).hasMatch();
}

PageStep StepInPath(const Address& own, const Address& other) {
    PageStep step;
    std::vector<QStringView> ownNumbers;
    std::vector<QStringView> otherNumbers;
    if (TemplateOf(own.Path, ownNumbers) == TemplateOf(other.Path, otherNumbers)) {
        int different = -1;
        int count = 0;
        for (size_t i = 0; i < ownNumbers.size(); ++i)
            if (ownNumbers[i] != otherNumbers[i]) {
                different = static_cast<int>(i);
                ++count;
            }
        if (count == 1 && different + 1 == static_cast<int>(ownNumbers.size())) {
            step.OwnNumber = NumberIn(ownNumbers.back());
            step.Number = NumberIn(otherNumbers.back());
            step.SameList = step.Number >= 0 && step.Number < 100000 && !(IsDated(own.Path) && step.Number < 32);
        }
        return step;
    }
    // The number comes behind what this address has: "/list", "/list/page/2", "/list-25.html".
    static const QRegularExpression extension(u"\\.[a-z]{2,5}$"_s, QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression folderPage(u"/(index|default|home)\\.[a-z]{2,5}$"_s,
                                               QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression counted(
        u"^[/_~.-]?(?:(?:page|seite|pagina|pag|pg|p|strana|strona|sida|side|list|index)[/_~=.-]?)?(?:\\d+_)?(\\d{1,5})"
        u"(?:\\.[a-z]{2,5})?$"_s,
        QRegularExpression::CaseInsensitiveOption);
    QString stem = own.Path;
    stem.remove(folderPage);
    stem.remove(extension);
    if (stem == u"/")
        stem.clear();
    if (!other.Path.startsWith(stem))
        return step;
    const QRegularExpressionMatch match = counted.match(other.Path.sliced(stem.size()));
    if (match.hasMatch()) {
        step.SameList = true;
        step.Number = NumberIn(match.capturedView(1));
    }
    return step;
}

} // namespace

PageStep StepBetween(const QString& own, const QString& other) {
    const Address from = PartsOf(own);
    const Address to = PartsOf(other);
    return from.Path == to.Path ? StepInQuery(from, to) : StepInPath(from, to);
}

QString SiteOf(QStringView address) {
    QStringView rest = address;
    if (StartsWithFolded(rest, u"https://"))
        rest = rest.sliced(8);
    else if (StartsWithFolded(rest, u"http://"))
        rest = rest.sliced(7);
    else
        return {};
    for (qsizetype i = 0; i < rest.size(); ++i)
        if (rest[i] == u'/' || rest[i] == u'?' || rest[i] == u'#' || rest[i] == u'\\') {
            rest = rest.first(i);
            break;
        }
    if (const qsizetype user = rest.lastIndexOf(u'@'); user >= 0)
        rest = rest.sliced(user + 1);
    if (const qsizetype port = rest.lastIndexOf(u':'); port >= 0 && !rest.endsWith(u']'))
        rest = rest.first(port);
    if (rest.endsWith(u'.'))
        rest.chop(1);
    if (StartsWithFolded(rest, u"www."))
        rest = rest.sliced(4);
    return rest.toString().toLower();
}

QString WithoutDotSegments(const QString& address) {
    const auto dotted = [&address] {
        for (qsizetype at = address.indexOf(u'.'); at >= 0; at = address.indexOf(u'.', at + 1))
            if (at > 0 && address[at - 1] == u'/')
                return true;
        return false;
    };
    if (!dotted())
        return address;
    const qsizetype host = address.indexOf(u"://");
    const qsizetype path = host < 0 ? -1 : address.indexOf(u'/', host + 3);
    qsizetype end = address.size();
    for (const QChar mark : {QChar(u'?'), QChar(u'#')})
        if (const qsizetype at = address.indexOf(mark); at >= 0)
            end = std::min(end, at);
    if (path < 0 || path > end || !QStringView(address).sliced(path, end - path).contains(u"/."))
        return address;
    QStringList kept;
    const QList<QStringView> segments = QStringView(address).sliced(path + 1, end - path - 1).split(u'/');
    for (qsizetype i = 0; i < segments.size(); ++i) {
        const bool dots = segments[i] == u"." || segments[i] == u"..";
        if (segments[i] == u".." && !kept.isEmpty())
            kept.removeLast();
        if (!dots)
            kept << segments[i].toString();
        else if (i + 1 == segments.size())
            kept << QString();
    }
    return address.first(path + 1) + kept.join(u'/') + address.sliced(end);
}

QString BaseAddressOf(const PageTree& page, const QString& url) {
    // The first base element with an address counts (HTML, section 4.2.3); a broken page has it in its body.
    const NodeIndex count = page.NameIdOf(u"base") < 0 ? 0 : page.Count();
    for (NodeIndex node = 0; node < count; ++node)
        if (page.Is(node, u"base") && page.HasAttribute(node, u"href")) {
            const QString base = ResolveAddress(url, page.Attribute(node, u"href").toString());
            return SiteOf(base).isEmpty() ? url : base;
        }
    return url;
}

} // namespace Brindle
