#include "adapters/Trovanumeri.h"

#include "adapters/FieldTable.h"
#include "adapters/ItalianSites.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr Marker listing(u"font-size: 20px;");

// From the heading above the listings.
QString ReadCategory(Harvest& harvest, WorkingText& text) {
    QString category;
    if (text.Contains(u"Ricerca "))
        category = CleanMarkup(text.TakeBetween(u"Ricerca ", u"</B>"));
    RememberCategory(harvest, category);
    FallBackOnRemembered(harvest, category);
    ReplaceAll(category, u"<B>", u"");
    return category;
}

void ReadHead(const Harvest& harvest, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing, u"href=\"");
    if (text.Contains(u"href=\"")) {
        lead.DetailsLink = harvest.Site().DetailsBase + text.TakeBetween(u"href=\"", u"\"");
        ReplaceAll(lead.DetailsLink, u"&amp;", u"&");
        ReplaceAll(lead.DetailsLink, u" ", u"");
    }
    lead.Name = StripTags(text.TakeBetween(u">", u"</a>"));
    ReplaceAll(lead.Name, u"&nbsp;", u"");
}

QString TakeCell(WorkingText& text) {
    return StripTags(text.TakeBetween(u"<td>", u"</td>"));
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
    return text.Find(u"<td>") < text.Find(u"<td height");
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

    Skip(text, u"<td", u">");
    const QString email = StripTags(text.TakeBetween(u">", u"</td>"));
    if (email.contains(u'@'))
        lead.Email = email;
}

} // namespace

const SiteAdapter& Trovanumeri() {
    static const SiteAdapter site{.Code = u"KVPE001005"_s,
                                  .Layouts = {{.InitList = u"<P>Risultati"_s,
                                               .EndList = u"Copyright"_s,
                                               .NextPageText = u"Avanti &gt;&gt;</"_s,
                                               .Read = GetYPTrovanumeriDataResults}}};
    return site;
}

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
