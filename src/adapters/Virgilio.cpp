#include "adapters/Virgilio.h"

#include "adapters/FieldTable.h"
#include "adapters/ItalianSites.h"
#include "adapters/PageTurning.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// A street this short is a house number or a stray particle; the result page then has the better one.
constexpr qsizetype shortStreet = 5;

constexpr Marker listing(u"<h6>");

// The details page; each field but the first two is looked for on the whole of it.
constexpr FieldRow headFields[] = {
    {.From = u"lc_category", .Via = u">", .To = u"</a", .Target = &Lead::Category, .Treatment = StripTags},
    {.From = u"v:name", .Via = u">", .To = u"</h1>", .Target = &Lead::Name, .Treatment = StripTags},
};

constexpr FieldRow phoneField[] = {
    {.From = u"tel:", .To = u"<", .Target = &Lead::Phone, .Treatment = Trim, .FromStart = true},
};

constexpr FieldRow firstNumberField[] = {
    {.From = u"primoNumeroTel", .To = u">", .FromStart = true},
    {.From = u"<strong>", .To = u"</strong>", .Target = &Lead::Phone, .Treatment = Trim, .AsAbove = true},
};

constexpr FieldRow contactFields[] = {
    {.From = u"fax:", .To = u"<", .Target = &Lead::Fax, .Treatment = Trim, .FromStart = true},
    {.From = u"mailto:", .To = u"\"", .Target = &Lead::Email, .Treatment = Trim, .FromStart = true},
    {.From = u";url=", .To = u"\"", .Target = &Lead::Website, .FromStart = true},
};

// From the search form.
QString ReadCategory(Harvest& harvest, WorkingText& text) {
    QString found;
    if (text.Contains(u"qs")) {
        Skip(text, u"qs", u"value=");
        found = CleanMarkup(text.TakeBetween(u"value=", u">"));
        ReplaceAll(found, u"\"", u"");
        ReplaceAll(found, u"  ", u"");
        found = KeptBefore(Trim(found), u"autocomplete");
        if (found == u"Cognome, Azienda o Parole chiave") // what the empty search box shows
            found.clear();
    }
    RememberCategory(harvest, found);
    FallBackOnRemembered(harvest, found);
    return found;
}

void ReadLink(WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, u"<h6> ", u"href=\"");
    if (text.Contains(u"href=\""))
        lead.DetailsLink = text.TakeBetween(u"href=\"", u"\"").toString();
}

bool IsPassedOver(Harvest& harvest, const QString& link) {
    return ContainsExact(link, u"social=view") || ContainsExact(link, u"void") || !ContainsExact(link, u"http://") ||
           IsListed(harvest, link) || ContainsExact(link, u"?");
}

void RepairStreet(WorkingText& text, Lead& lead) {
    if (lead.Street.isEmpty() || lead.Street.size() > shortStreet)
        return;
    lead.Street = text.TakeBetween(u"class=\"address\">", u", ").toString();
    lead.FullAddress = lead.Street + u", " + lead.PostalCode + u' ' + lead.City + u" (" + lead.State + u')';
}

// "20121 Milano (MI)".
void SplitLocality(const QString& line, Lead& lead) {
    const QStringList words = SplitText(line, u" ");
    if (words.first().size() == 5)
        lead.PostalCode = words.first();
    if (words.size() <= 2)
        return;
    lead.State = words.last();
    lead.City = line;
    ReplaceAll(lead.City, lead.PostalCode, u"");
    ReplaceAll(lead.City, lead.State, u"");
    ReplaceAll(lead.State, u"(", u"");
    ReplaceAll(lead.State, u")", u"");
}

void ReadAddress(QStringView block, Lead& lead) {
    WorkingText text(block);
    lead.Street = CleanMarkup(text.TakeBetween(u"<strong>", u"</strong>"));
    lead.FullAddress = lead.Street;
    const QString line = CleanMarkup(text.TakeBetween(u"<strong>", u"</strong>"));
    if (line.isEmpty())
        return;
    lead.FullAddress += (lead.Street.isEmpty() ? u"" : u", ") + line;
    SplitLocality(line, lead);
}

} // namespace

const SiteAdapter& Virgilio() {
    static const SiteAdapter site{.Code = u"KVPE001004"_s,
                                  .Layouts = {{.InitList = u"conteggi"_s,
                                               .EndList = u"vf_footer"_s,
                                               .NextPageText = u"Avanti \u203A</a>"_s,
                                               .Read = GetYPVirgilioDataResults}},
                                  .TurnPage = [](PageTurn& turn, const QString&) { return GetVirgilioNextURL(turn); }};
    return site;
}

void GetYPVirgilioDataResults(Harvest& harvest, const QString& page) {
    WorkingText text(page);
    Lead lead;
    lead.Category = ReadCategory(harvest, text);
    Skip(text, u"filtri-top", u">");
    ForEachListing(
        harvest, text, [&] { return text.Contains(listing); },
        [&] {
            ReadLink(text, lead);
            if (IsPassedOver(harvest, lead.DetailsLink))
                return true;
            if (ContainsExact(lead.DetailsLink, harvest.Site().OwnHost))
                GetUVirgilioDetails1(harvest, lead);
            else
                lead.Website = lead.DetailsLink;
            RepairStreet(text, lead);
            return KeepLead(harvest, ItalianRules, lead);
        });
}

void GetUVirgilioDetails1(Harvest& harvest, Lead& lead) {
    QString page;
    if (!harvest.Pages.DownloadURL(lead.DetailsLink, page, false))
        return;
    WorkingText text(page);
    ReadFields(text, headFields, lead);
    if (text.Contains(u"lc_address"))
        ReadAddress(text.TakeBetween(u"lc_address", u"</h3>"), lead);
    ReadFields(text, phoneField, lead);
    if (lead.Phone.isEmpty())
        ReadFields(text, firstNumberField, lead);
    ReadFields(text, contactFields, lead);
    if (lead.Website == harvest.Site().AdvertUrl)
        lead.Website.clear();
}

TurnedPage GetVirgilioNextURL(PageTurn& turn) {
    const bool clicked = ClickFirstLink(turn, [](const QString& text) { return ContainsExact(text, u"Avanti"); });
    return {.Clicked = clicked, .GoesOn = clicked, .OpenToStart = true};
}

} // namespace Brindle
