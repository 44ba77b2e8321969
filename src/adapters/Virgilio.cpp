#include "adapters/Virgilio.h"

#include "adapters/FieldTable.h"
#include "adapters/ItalianSites.h"
#include "adapters/PageTurning.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

namespace Brindle {

namespace {

// A street this short is a house number or a stray particle; the result page then has the better one.
constexpr qsizetype shortStreet = 5;

const Marker tagEnd(u">");
const Marker tagBegin(u"<");
const Marker quote(u"\"");
const Marker href(u"href=\"");

// The search form, and the filters above the listings.
const Marker searchBox(u"qs");
const Marker searchValue(u"value=");
const Marker filters(u"filtri-top");

// A listing.
const Marker listing(u"<h6>");
const Marker listingHead(u"<h6> ");
const Marker listedAddress(u"class=\"address\">");
const Marker comma(u", ");

// A details page.
const Marker category(u"lc_category");
const Marker linkEnd(u"</a");
const Marker name(u"v:name");
const Marker nameEnd(u"</h1>");
const Marker address(u"lc_address");
const Marker addressEnd(u"</h3>");
const Marker strong(u"<strong>");
const Marker strongEnd(u"</strong>");
const Marker telephone(u"tel:");
const Marker firstNumber(u"primoNumeroTel");
const Marker fax(u"fax:");
const Marker mailto(u"mailto:");
const Marker website(u";url=");

const FieldRow headFields[] = {
    {.From = category, .Via = &tagEnd, .To = linkEnd, .Target = &Lead::Category, .Treatment = StripTags},
    {.From = name, .Via = &tagEnd, .To = nameEnd, .Target = &Lead::Name, .Treatment = StripTags},
};

const FieldRow phoneField[] = {
    {.From = telephone, .To = tagBegin, .Target = &Lead::Phone, .Treatment = Trim, .FromStart = true},
};

const FieldRow firstNumberField[] = {
    {.From = firstNumber, .To = tagEnd, .FromStart = true},
    {.From = strong, .To = strongEnd, .Target = &Lead::Phone, .Treatment = Trim, .AsAbove = true},
};

const FieldRow contactFields[] = {
    {.From = fax, .To = tagBegin, .Target = &Lead::Fax, .Treatment = Trim, .FromStart = true},
    {.From = mailto, .To = quote, .Target = &Lead::Email, .Treatment = Trim, .FromStart = true},
    {.From = website, .To = quote, .Target = &Lead::Website, .FromStart = true},
};

QString ReadCategory(Harvest& harvest, WorkingText& text) {
    QString found;
    if (text.Contains(searchBox)) {
        Skip(text, searchBox, searchValue);
        found = CleanMarkup(text.TakeBetween(searchValue, tagEnd));
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
    Skip(text, listingHead, href);
    if (text.Contains(href))
        lead.DetailsLink = text.TakeBetween(href, quote).toString();
}

bool IsPassedOver(Harvest& harvest, const QString& link) {
    return ContainsExact(link, u"social=view") || ContainsExact(link, u"void") || !ContainsExact(link, u"http://") ||
           IsListed(harvest, link) || ContainsExact(link, u"?");
}

void RepairStreet(WorkingText& text, Lead& lead) {
    if (lead.Street.isEmpty() || lead.Street.size() > shortStreet)
        return;
    lead.Street = text.TakeBetween(listedAddress, comma).toString();
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
    lead.Street = CleanMarkup(text.TakeBetween(strong, strongEnd));
    lead.FullAddress = lead.Street;
    const QString line = CleanMarkup(text.TakeBetween(strong, strongEnd));
    if (line.isEmpty())
        return;
    lead.FullAddress += (lead.Street.isEmpty() ? u"" : u", ") + line;
    SplitLocality(line, lead);
}

} // namespace

void GetYPVirgilioDataResults(Harvest& harvest, const QString& page) {
    WorkingText text(page);
    Lead lead;
    lead.Category = ReadCategory(harvest, text);
    Skip(text, filters, tagEnd);
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
    if (text.Contains(address))
        ReadAddress(text.TakeBetween(address, addressEnd), lead);
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
