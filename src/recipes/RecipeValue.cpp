#include "recipes/RecipeValue.h"

#include "discovery/PostalAddress.h"
#include "discovery/StructuredLinks.h"
#include "discovery/StructuredText.h"
#include "toolkit/Text.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

bool IsAddressColumn(Field column) {
    return column == Field::FullAddress || column == Field::Address;
}

// The lines of a text as one, with a comma where a line ends.
QString WithCommas(const QString& lines) {
    QString text;
    for (QStringView line : QStringView(lines).split(u'\n')) {
        line = line.trimmed();
        while (!line.isEmpty() && (line.back() == u',' || line.back() == u' '))
            line.chop(1);
        while (!line.isEmpty() && (line.front() == u',' || line.front() == u' '))
            line = line.sliced(1);
        if (line.isEmpty())
            continue;
        if (!text.isEmpty())
            text += u", ";
        text += line;
    }
    return text;
}

NodeIndex LinkIn(const PageTree& page, NodeIndex node) {
    for (NodeIndex at = node; at < page.End(node); ++at)
        if (page.Is(at, u"a") && page.HasAttribute(at, u"href"))
            return at;
    return noNode;
}

} // namespace

bool IsLinkColumn(Field column) {
    return column == Field::Website || column == Field::MapLink || column == Field::DetailsLink;
}

QString RawFieldValue(const ValueSource& source, NodeIndex node, Field column, const QString& attribute) {
    if (!attribute.isEmpty())
        return WithLevelBlanks(source.Page.Attribute(node, attribute));
    if (IsLinkColumn(column)) {
        const NodeIndex link = LinkIn(source.Page, node);
        return link == noNode ? QString() : Trim(source.Page.Attribute(link, u"href"));
    }
    const NodeIndex end = source.Page.End(node);
    if (IsAddressColumn(column))
        return WithCommas(ShownText(source.Lines, node, end, u"\n"));
    return WithLevelBlanks(ShownText(source.Lines, node, end));
}

QString FinishedFieldValue(Field column, const QString& base, const QString& text) {
    if (IsLinkColumn(column))
        return WebAddress(base, text);
    if (column == Field::Email)
        return MailAddress(text);
    if ((column == Field::Phone || column == Field::Fax) &&
        (StartsWithFolded(text, u"tel:") || StartsWithFolded(text, u"fax:")))
        return WithLevelBlanks(QString::fromUtf8(QByteArray::fromPercentEncoding(text.sliced(4).toUtf8())));
    return WithLevelBlanks(text);
}

void SplitFullAddress(const PageTree& page, const QString& url, const QString& country, Lead& lead) {
    const QString language = page.Root() == noNode ? QString() : page.Attribute(page.Root(), u"lang").toString();
    const AddressParts parts = SplitAddress(
        lead.FullAddress, {.Country = country, .Language = language, .Host = HostOfAddress(url), .PhoneRegion = {}});
    const auto take = [](QString& field, const QString& part) {
        if (!part.isEmpty())
            field = part;
    };
    take(lead.Street, parts.Street);
    take(lead.City, parts.City);
    take(lead.State, parts.State);
    take(lead.PostalCode, parts.PostalCode);
    take(lead.Country, parts.Country);
}

} // namespace Brindle
