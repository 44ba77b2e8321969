#include "recipes/RecipeValue.h"

#include "discovery/Annotations.h"
#include "discovery/PostalAddress.h"
#include "discovery/PostalAddressWords.h"
#include "discovery/RecordsContacts.h"
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

bool IsNumber(QStringView text) {
    return text.size() >= 4 && std::all_of(text.begin(), text.end(), [](QChar c) { return c.isDigit() || c == u'-'; });
}

// The lines of a text as one, with a comma where a line ends; a postal code stays with its town.
QString WithCommas(const QString& lines) {
    QString text;
    bool afterNumber = false;
    for (QStringView line : QStringView(lines).split(u'\n')) {
        line = line.trimmed();
        while (!line.isEmpty() && (line.back() == u',' || line.back() == u' '))
            line.chop(1);
        while (!line.isEmpty() && (line.front() == u',' || line.front() == u' '))
            line = line.sliced(1);
        if (line.isEmpty())
            continue;
        if (!text.isEmpty())
            text += afterNumber ? u" "_s : u", "_s;
        text += line;
        afterNumber = IsNumber(line);
    }
    return text;
}

// Several numbers, one a line, are parted as in the results list; words beside a number stay with it.
QString JoinedNumbers(const QString& lines) {
    const QStringList all = lines.split(u'\n', Qt::SkipEmptyParts);
    const bool numbers = std::all_of(all.cbegin(), all.cend(), [](const QString& line) {
        return std::count_if(line.cbegin(), line.cend(), [](QChar c) { return c.isDigit(); }) >= 5;
    });
    return WithLevelBlanks(all.join(numbers ? u';' : u' '));
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

QString RawFieldValue(const ValueSource& source, NodeIndex node, Field column, const QString& attribute,
                      const RecipePattern& cut) {
    if (!attribute.isEmpty()) {
        const QStringView value = source.Page.Attribute(node, attribute);
        // Addresses that are kept from robots: only the page's own script can read them.
        return column == Field::Email && attribute == u"data-cfemail" ? DecodedMail(value) : WithLevelBlanks(value);
    }
    if (IsLinkColumn(column)) {
        const NodeIndex link = LinkIn(source.Page, node);
        if (link != noNode || !cut.IsSet())
            return link == noNode ? QString() : Trim(source.Page.Attribute(link, u"href"));
    }
    const NodeIndex end = source.Page.End(node);
    if (cut.SeesLines())
        return ShownText(source.Lines, node, end, u"\n");
    if (IsAddressColumn(column))
        return WithCommas(ShownText(source.Lines, node, end, u"\n"));
    if (column == Field::Phone || column == Field::Fax)
        return JoinedNumbers(ShownText(source.Lines, node, end, u"\n"));
    return WithLevelBlanks(ShownText(source.Lines, node, end));
}

bool IsWholeFlatRecord(const RecipeField& row, const RecipePattern& cut, RecordSpan record) {
    return record.Flat && row.Selector == u":scope" && cut.SeesLines();
}

QString FlatRecordText(const ValueSource& source, RecordSpan record) {
    return ShownText(source.Lines, record.Begin, record.End, u"\n");
}

QString FinishedFieldValue(Field column, const QString& base, const QString& text) {
    if (IsLinkColumn(column)) {
        const QString address = WebAddress(base, text);
        const QString target = column == Field::Website ? RedirectTarget(address) : QString();
        return target.isEmpty() ? address : target;
    }
    if (column == Field::Email) {
        const QString mail = MailAddress(text);
        const QStringList hidden = mail.isEmpty() ? MailsIn(text) : QStringList();
        return hidden.isEmpty() ? mail : hidden.first();
    }
    if (IsAddressColumn(column) && text.contains(u'\n'))
        return WithCommas(text);
    if ((column == Field::Phone || column == Field::Fax) &&
        (StartsWithFolded(text, u"tel:") || StartsWithFolded(text, u"fax:")))
        return WithLevelBlanks(QString::fromUtf8(QByteArray::fromPercentEncoding(text.sliced(4).toUtf8())));
    return WithLevelBlanks(text);
}

void SplitFullAddress(const PageTree& page, const QString& url, const QString& country, Lead& lead) {
    if (lead.FullAddress.isEmpty())
        return;
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
    if (!lead.City.isEmpty() || !lead.Street.isEmpty() || !lead.PostalCode.isEmpty())
        return;
    // A town and nothing else, or "Salem, OR".
    const QString& full = lead.FullAddress;
    const bool isName = full.size() <= 60 && full.front().isUpper() && !HasDigit(full) && !HasStreetWord(full) &&
                        !full.contains(u'\u2022') && !full.contains(u'\u00b7');
    if (!isName)
        return;
    const AddressParts town = SplitAddress(full, {.Country = u"US"_s, .Language = {}, .Host = {}, .PhoneRegion = {}});
    take(lead.State, town.State);
    take(lead.City, town.City.isEmpty() && !full.contains(u',') ? full : town.City);
}

} // namespace Brindle
