#include "adapters/Trovanumeri.h"

#include "adapters/FieldTable.h"
#include "adapters/ItalianSites.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

namespace Brindle {

namespace {

const Marker tagEnd(u">");
const Marker quote(u"\"");
const Marker href(u"href=\"");

// The heading above the listings.
const Marker heading(u"Ricerca ");
const Marker headingEnd(u"</B>");

// A listing.
const Marker listing(u"font-size: 20px;");
const Marker linkEnd(u"</a>");
const Marker cell(u"<td>");
const Marker cellEnd(u"</td>");
const Marker cellWithHeight(u"<td height");
const Marker anyCell(u"<td");

QString ReadCategory(Harvest& harvest, WorkingText& text) {
    QString category;
    if (text.Contains(heading))
        category = CleanMarkup(text.TakeBetween(heading, headingEnd));
    RememberCategory(harvest, category);
    FallBackOnRemembered(harvest, category);
    ReplaceAll(category, u"<B>", u"");
    return category;
}

void ReadHead(const Harvest& harvest, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing, href);
    if (text.Contains(href)) {
        lead.DetailsLink = harvest.Site().DetailsBase + text.TakeBetween(href, quote);
        ReplaceAll(lead.DetailsLink, u"&amp;", u"&");
        ReplaceAll(lead.DetailsLink, u" ", u"");
    }
    lead.Name = StripTags(text.TakeBetween(tagEnd, linkEnd));
    ReplaceAll(lead.Name, u"&nbsp;", u"");
}

QString TakeCell(WorkingText& text) {
    return StripTags(text.TakeBetween(cell, cellEnd));
}

QString WithoutLabel(QString phone) {
    ReplaceAll(phone, u"Tel:", u"");
    return phone;
}

// "20121 San Donato Milanese (MI)". A first word that is no postal code is dropped.
void SplitLocality(const QString& locality, Lead& lead) {
    const QStringList words = SplitText(locality, u" ");
    if (words.first().size() == 5)
        lead.PostalCode = words.first();
    for (qsizetype i = 1; i < words.size(); ++i) {
        if (words[i].contains(u'('))
            lead.State = words[i];
        else
            AppendWord(lead.City, words[i]);
    }
    ReplaceAll(lead.State, u"(", u"");
    ReplaceAll(lead.State, u")", u"");
}

// A cell is a second phone when a plain cell, the street's, comes before the cell with a height, which closes the
// listing. What is absent counts as standing before everything.
bool AnotherCellFollows(WorkingText& text) {
    return text.Find(cell) < text.Find(cellWithHeight);
}

void ReadCells(WorkingText& text, Lead& lead) {
    SplitLocality(TakeCell(text), lead);
    lead.Phone = WithoutLabel(TakeCell(text));
    QString third = TakeCell(text);
    if (AnotherCellFollows(text)) {
        const QString second = WithoutLabel(third);
        if (!second.isEmpty())
            lead.Phone += u',' + second;
        third = TakeCell(text);
    }
    lead.Street = third;
    QString address = lead.Street;
    if (!lead.PostalCode.isEmpty())
        address += u' ' + lead.PostalCode;
    if (!lead.City.isEmpty())
        address += u' ' + lead.City;
    if (!lead.State.isEmpty())
        address += u" (" + lead.State + u')';
    lead.FullAddress = Trim(address);

    Skip(text, anyCell, tagEnd);
    const QString email = StripTags(text.TakeBetween(tagEnd, cellEnd));
    if (email.contains(u'@'))
        lead.Email = email;
}

} // namespace

void GetYPTrovanumeriDataResults(Harvest& harvest, const QString& page) {
    WorkingText text(page);
    Lead lead;
    lead.Category = ReadCategory(harvest, text);
    ForEachListing(
        harvest, text, [&] { return text.ContainsFolded(listing); },
        [&] {
            ReadHead(harvest, text, lead);
            if (!ContainsExact(lead.DetailsLink, u"dettagli") || IsListed(harvest, lead.DetailsLink))
                return true;
            ReadCells(text, lead);
            return KeepLead(harvest, ItalianRules, lead);
        });
}

} // namespace Brindle
