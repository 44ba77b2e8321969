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

// The one address of the web in a text: alone, or behind a label.
QString WebAddressAmongWords(const QString& text) {
    constexpr qsizetype longest = 120;
    QString found;
    if (text.size() > longest)
        return found;
    for (const QStringView word : QStringView(text).split(u' ', Qt::SkipEmptyParts)) {
        const QString address = WebAddressIn(word);
        if (!address.isEmpty() && !found.isEmpty())
            return {};
        found = address.isEmpty() ? found : address;
    }
    return found;
}

// Where a link leads; of a website the text of a link that goes round by this site.
QString LinkOrItsText(const ValueSource& source, NodeIndex link, Field column) {
    QString href = Trim(source.Page.Attribute(link, u"href"));
    if (column != Field::Website)
        return href;
    const QString address = WebAddress(source.Base, href);
    if ((!address.isEmpty() && !IsSameSite(address, source.Base)) || !RedirectTarget(address).isEmpty())
        return href;
    const QString text = WebAddressAmongWords(ShownText(source.Lines, link, source.Page.End(link)));
    return text.isEmpty() || IsSameSite(text, source.Base) ? href : text;
}

// The text of an element without what its markup hides: words in mail addresses that robots take for part of them.
QString WithoutHidden(const PageTree& page, NodeIndex node, const QString& shown) {
    QString text;
    bool hides = false;
    for (NodeIndex at = node; at < page.End(node); ++at) {
        const QString style = page.Attribute(at, u"style").toString().remove(u' ');
        if (style.contains(u"display:none", Qt::CaseInsensitive)) {
            hides = true;
            at = page.End(at) - 1;
        } else if (page.IsText(at)) {
            text += page.Text(at);
        }
    }
    return hides ? WithLevelBlanks(text) : shown;
}

// The address of mail in a text, or else behind a link or out of sight of robots.
QString MailOrItsLink(const ValueSource& source, NodeIndex node, const QString& shown) {
    QString text = WithoutHidden(source.Page, node, shown);
    if (!MailAddress(text).isEmpty() || !MailsIn(text).isEmpty())
        return text;
    for (NodeIndex at = node; at < source.Page.End(node); ++at) {
        if (const QStringView hidden = source.Page.Attribute(at, u"data-cfemail"); !hidden.isEmpty())
            return DecodedMail(hidden);
        if (const QStringView href = source.Page.Attribute(at, u"href"); StartsWithFolded(href, u"mailto:"))
            return href.toString();
    }
    return text;
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
        if (link != noNode)
            return LinkOrItsText(source, link, column);
        if (!cut.IsSet())
            return column == Field::Website ? WebAddressAmongWords(ShownText(source.Lines, node, source.Page.End(node)))
                                            : QString();
    }
    const NodeIndex end = source.Page.End(node);
    if (cut.SeesLines())
        return ShownText(source.Lines, node, end, u"\n");
    if (IsAddressColumn(column))
        return WithCommas(ShownText(source.Lines, node, end, u"\n"));
    if (column == Field::Phone || column == Field::Fax)
        return JoinedNumbers(ShownText(source.Lines, node, end, u"\n"));
    const QString text = WithLevelBlanks(ShownText(source.Lines, node, end));
    return column == Field::Email && !cut.IsSet() ? MailOrItsLink(source, node, text) : text;
}

bool IsWholeFlatRecord(const RecipeField& row, const RecipePattern& cut, RecordSpan record) {
    return record.Flat && row.Selector == u":scope" && cut.SeesLines();
}

QString FlatRecordText(const ValueSource& source, RecordSpan record) {
    return ShownText(source.Lines, record.Begin, record.End, u"\n");
}

QString FinishedFieldValue(Field column, const QString& base, const QString& text) {
    if (IsLinkColumn(column)) {
        QString address = WebAddress(base, text);
        if (column != Field::Website)
            return address;
        // The way there is no website.
        const QString target = RedirectTarget(address);
        const QString& website = target.isEmpty() ? address : target;
        return IsMapAddress(HostOfAddress(website), website) ? QString() : website;
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

QString JoinedValues(Field column, const QStringList& values) {
    if (IsAddressColumn(column))
        return WithCommas(values.join(u'\n'));
    const bool isNumber = column == Field::Phone || column == Field::Fax;
    return values.join(isNumber ? u";"_s : column == Field::Category ? u", "_s : u" "_s);
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
