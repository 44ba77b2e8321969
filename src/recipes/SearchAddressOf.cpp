#include "recipes/SearchAddressOf.h"

#include "discovery/StructuredLinks.h"

#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <array>
#include <vector>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<QStringView, 2> marks{u"{what}", u"{where}"};

// What the two boxes of a search are called, in the languages of the demo and of many directories.
constexpr QStringView whatNames[] = {u"what", u"q",     u"query",         u"keyword",      u"keywords",   u"search",
                                     u"term", u"terms", u"find",          u"search_terms", u"searchterm", u"was",
                                     u"quoi", u"que",   u"cosa",          u"find_desc",    u"quoiqui",    u"k",
                                     u"s",    u"text",  u"keyword_search"};
constexpr QStringView whereNames[] = {u"where",
                                      u"location",
                                      u"loc",
                                      u"near",
                                      u"city",
                                      u"place",
                                      u"zip",
                                      u"town",
                                      u"ort",
                                      u"wo",
                                      u"stadt",
                                      u"plz",
                                      u"lieu",
                                      u"ville",
                                      u"ou",
                                      u"dove",
                                      u"donde",
                                      u"localidad",
                                      u"ciudad",
                                      u"citta",
                                      u"postcode",
                                      u"find_loc",
                                      u"geo_location_terms",
                                      u"area",
                                      u"region",
                                      u"l"};
// Parts that say which page of the list it is.
constexpr QStringView pageNames[] = {u"page", u"p", u"pg", u"start", u"offset", u"from", u"seite", u"pagina"};

template <size_t Size>
bool IsOneOf(QStringView name, const QStringView (&names)[Size]) {
    const QString lower = name.toString().toLower();
    return std::find(std::begin(names), std::end(names), lower) != std::end(names);
}

// A part of an address as somebody would have typed it.
QString Typed(QStringView part) {
    QString text = part.toString();
    text.replace(u'+', u' ');
    return QUrl::fromPercentEncoding(text.toUtf8()).simplified().toLower();
}

// In a path, words are often joined: "san-francisco".
QString TypedInPath(QStringView part) {
    QString text = Typed(part);
    text.replace(u'-', u' ').replace(u'_', u' ');
    return text.simplified();
}

// An address cut where parts of it can be exchanged.
class Parts {
public:
    explicit Parts(const QString& url) {
        const QString address = url.section(u'#', 0, 0);
        const qsizetype query = address.indexOf(u'?');
        const QString front = query < 0 ? address : address.left(query);
        const qsizetype host = front.indexOf(u"://"_s);
        const qsizetype path = host < 0 ? -1 : front.indexOf(u'/', host + 3);
        origin_ = path < 0 ? front : front.left(path);
        if (path >= 0)
            path_ = front.mid(path + 1).split(u'/');
        if (query >= 0)
            query_ = address.mid(query + 1).split(u'&');
    }

    // Puts a mark in the place of the first part of the query of that name, whatever stands there.
    template <class IsNamed>
    bool PutByName(QStringView mark, const IsNamed& isNamed) {
        for (QString& part : query_) {
            const qsizetype equals = part.indexOf(u'=');
            if (equals < 0 || part.contains(u'{') || !isNamed(part.left(equals)))
                continue;
            part = part.left(equals + 1) + mark;
            return true;
        }
        return false;
    }

    bool PutByText(QStringView mark, const QString& typed) {
        const QString text = typed.simplified().toLower();
        if (text.isEmpty())
            return false;
        for (QString& part : query_)
            if (const qsizetype equals = part.indexOf(u'='); equals >= 0 && Typed(part.mid(equals + 1)) == text) {
                part = part.left(equals + 1) + mark;
                return true;
            }
        for (QString& part : path_)
            if (!part.contains(u'{') && TypedInPath(part) == TypedInPath(text)) {
                part = mark.toString();
                return true;
            }
        return false;
    }

    // The first page is where a search begins.
    void DropPageNumber() {
        query_.removeIf([](const QString& part) {
            const QString value = part.section(u'=', 1);
            return IsOneOf(part.section(u'=', 0, 0), pageNames) && !value.isEmpty() &&
                   std::all_of(value.cbegin(), value.cend(), [](QChar c) { return c.isDigit(); });
        });
    }

    QString Whole() const {
        QString address = origin_ + u'/' + path_.join(u'/');
        if (!query_.isEmpty())
            address += u'?' + query_.join(u'&');
        return address;
    }

private:
    QString origin_;
    QStringList path_;
    QStringList query_;
};

struct Box {
    QString Name;
    QString Value;
    bool IsWhat = false;
    bool IsWhere = false;
};

// The boxes of the page's forms in which somebody may have typed.
std::vector<Box> BoxesOf(const PageTree& page) {
    std::vector<Box> boxes;
    for (NodeIndex node = 0; node < page.Count(); ++node) {
        if (!page.Is(node, u"input"))
            continue;
        const QString type = page.Attribute(node, u"type").toString().toLower();
        if (!type.isEmpty() && type != u"text" && type != u"search")
            continue;
        Box box{.Name = page.Attribute(node, u"name").toString(), .Value = page.Attribute(node, u"value").toString()};
        if (box.Name.isEmpty())
            continue;
        box.IsWhere = IsOneOf(box.Name, whereNames) || IsOneOf(page.Attribute(node, u"id"), whereNames);
        box.IsWhat = !box.IsWhere && (IsOneOf(box.Name, whatNames) || IsOneOf(page.Attribute(node, u"id"), whatNames));
        boxes.push_back(std::move(box));
    }
    return boxes;
}

QString Made(Parts& parts, bool any) {
    if (!any)
        return {};
    parts.DropPageNumber();
    const QString address = parts.Whole();
    return WhyNoSearchAddress(address).isEmpty() ? address : QString();
}

} // namespace

QString SearchAddressOf(const PageTree& page, const QString& url) {
    Parts parts(url);
    bool found[2]{};
    const std::vector<Box> boxes = BoxesOf(page);
    for (const Box& box : boxes) {
        if (box.IsWhat == box.IsWhere)
            continue;
        const size_t kind = box.IsWhere ? 1 : 0;
        const auto isNamed = [&box](QStringView name) { return name == box.Name; };
        found[kind] = found[kind] || parts.PutByName(marks[kind], isNamed) || parts.PutByText(marks[kind], box.Value);
    }
    if (!found[0])
        found[0] = parts.PutByName(marks[0], [](QStringView name) { return IsOneOf(name, whatNames); });
    if (!found[1])
        found[1] = parts.PutByName(marks[1], [](QStringView name) { return IsOneOf(name, whereNames); });
    return Made(parts, found[0] || found[1]);
}

QString SearchAddressOf(const QString& url, const QString& what, const QString& where) {
    Parts parts(url);
    const bool hasWhat = parts.PutByText(marks[0], what);
    const bool hasWhere = parts.PutByText(marks[1], where);
    return Made(parts, hasWhat || hasWhere);
}

QString WhyNoSearchAddress(const QString& address) {
    if (HostOfAddress(address).isEmpty())
        return u"search is no address of http or https"_s;
    QString rest = address;
    for (const QStringView mark : marks)
        rest.remove(mark.toString());
    if (rest == address || rest.contains(u'{') || rest.contains(u'}'))
        return u"search takes {what} and {where}, and no other braces"_s;
    // A search that chose its host by what somebody types could go anywhere.
    if (HostOfAddress(address).contains(u'{'))
        return u"search has {what} or {where} in its host"_s;
    return {};
}

} // namespace Brindle
