#include "adapters/PagineBianche.h"

#include "adapters/FieldTable.h"
#include "adapters/ItalianSites.h"
#include "core/Delay.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

#include <QRandomGenerator>

namespace Brindle {

namespace {

// The site takes offence at visitors that ask for details pages in quick succession.
constexpr int longestWait = 2000;

const Marker tagEnd(u">");
const Marker tagBegin(u"<");
const Marker quote(u"\"");
const Marker href(u"href=\"");
const Marker mailto(u"mailto:");
const Marker spanEnd(u"</span>");

// The search form, with and without quotes.
const Marker quotedSearch(u"id=\"input_cosa\"");
const Marker quotedValue(u"value=\"");
const Marker bareSearch(u"id=input_cosa");
const Marker bareValue(u"value=");
const Marker bareValueEnd(u" name");

// A listing.
const Marker listing(u"org fn");
const Marker linkEnd(u"</a>");
const Marker telephone(u"tel:");
const Marker fax(u"fax:");

// A listing of layout 2.
const Marker street(u"<span class=\"street-address\"");
const Marker locality(u"<span class=\"locality\"");
const Marker localityText(u"> ");
const Marker blank(u" ");
const Marker tooltip(u"class=\"site-tooltip\"");
const Marker tooltipLink(u" href=\"");

const FieldRow listingFields[] = {
    {.From = street, .Via = &tagEnd, .To = spanEnd, .Target = &Lead::Street},
    // "20121 Milano (MI)": the first word is the postal code.
    {.From = locality, .Via = &localityText, .To = blank, .Target = &Lead::PostalCode},
    {.From = blank, .To = spanEnd, .Target = &Lead::City, .AsAbove = true},
    {.From = telephone, .To = spanEnd, .Target = &Lead::Phone},
    {.From = fax, .To = spanEnd, .Target = &Lead::Fax},
    {.From = tooltip, .To = tooltipLink},
    {.From = href, .To = quote, .Target = &Lead::Website, .AsAbove = true},
    {.From = mailto, .To = quote, .Target = &Lead::Email, .Treatment = CleanAndStrip},
};

// The details page of layout 1.
const Marker contactForm(u"class=\"web-contatti\"><a href=\"");
const Marker formAddress(u"name=\"dest_em\" value=\"");
const Marker detailsName(u"<h1 itemprop=\"name\">");
const Marker detailsNameEnd(u"</h1>");
const Marker detailsStreet(u"itemprop=\"streetAddress\">");
const Marker hyphen(u"-");
const Marker detailsPostalCode(u"itemprop=\"postalCode\">");
const Marker detailsLocality(u"itemprop=\"addressLocality\">");
const Marker open(u"(");
const Marker close(u")");
const Marker detailsTooltip(u"<a class=\"site-tooltip\" href=\"");

const FieldRow detailsFields[] = {
    {.From = detailsName, .To = detailsNameEnd, .Target = &Lead::Name},
    {.From = detailsStreet, .To = spanEnd, .Target = &Lead::Street},
    // A hyphen sets the postal code off from the street; without one there is none, whatever the markup says.
    {.From = detailsPostalCode, .To = tagBegin, .Target = &Lead::PostalCode, .Treatment = Trim, .Test = &hyphen},
    {.From = detailsLocality, .To = open, .Target = &Lead::City},
    {.From = open, .To = close, .Target = &Lead::State, .AsAbove = true},
    {.From = telephone, .To = spanEnd, .Target = &Lead::Phone, .Treatment = Trim},
    {.From = fax, .To = spanEnd, .Target = &Lead::Fax},
    {.From = detailsTooltip, .To = quote, .Target = &Lead::Website},
};

QString ReadCategory(Harvest& harvest, WorkingText& text) {
    QString category;
    if (text.Contains(quotedSearch)) {
        Skip(text, quotedSearch, quotedValue);
        category = CleanMarkup(text.TakeBetween(quotedValue, quote));
    } else if (text.Contains(bareSearch)) {
        Skip(text, bareSearch, bareValue);
        category = CleanMarkup(text.TakeBetween(bareValue, bareValueEnd));
    }
    RememberCategory(harvest, category);
    FallBackOnRemembered(harvest, category);
    return category;
}

// Link and name, which both layouts have. Layout 1 cleans the link.
void ReadHead(const Harvest& harvest, WorkingText& text, Lead& lead, bool cleansLink) {
    StartListing(lead);
    Skip(text, listing, href);
    if (text.Contains(href)) {
        const QStringView link = text.TakeBetween(href, quote);
        lead.DetailsLink = cleansLink ? CleanMarkup(link) : link.toString();
        Skip(text, quote, tagEnd);
        if (!ContainsExact(lead.DetailsLink, u"http"))
            lead.DetailsLink.prepend(harvest.Site().DetailsBase + u'/');
    }
    lead.Name = StripAndClean(text.TakeBetween(tagEnd, linkEnd));
}

// `readFields` reads what follows the name.
template <typename ReadFieldsOf>
void ReadListings(Harvest& harvest, const QString& page, bool cleansLink, ReadFieldsOf readFields) {
    WorkingText text(page);
    Lead lead;
    lead.Category = ReadCategory(harvest, text);
    ForEachListing(
        harvest, text, [&] { return text.ContainsFolded(listing); },
        [&] {
            ReadHead(harvest, text, lead, cleansLink);
            if (IsListed(harvest, lead.DetailsLink))
                return true;
            readFields(text, lead);
            return KeepLead(harvest, ItalianRules, lead);
        });
}

QString EmailFromContactForm(Harvest& harvest, WorkingText& details) {
    const QString link = CleanMarkup(details.TakeBetween(contactForm, quote));
    QString page;
    if (link.isEmpty() || !harvest.Pages.DownloadURL(QString(harvest.Site().DetailsBase + link), page, false))
        return {};
    return CleanMarkup(WorkingText(page).TakeBetween(formAddress, quote));
}

} // namespace

void GetYPPagBianchDataResults(Harvest& harvest, const QString& page) {
    if (harvest.State.CurrSite == 1)
        GetYPPagBianchDataResults1(harvest, page);
    else if (harvest.State.CurrSite == 2)
        GetYPPagBianchDataResults2(harvest, page);
}

void GetYPPagBianchDataResults1(Harvest& harvest, const QString& page) {
    ReadListings(harvest, page, true, [&harvest](WorkingText&, Lead& lead) {
        if (lead.DetailsLink.isEmpty())
            return;
        BlockingDelay(harvest.Loop, QRandomGenerator::global()->bounded(longestWait));
        GetPagBianchDetails(harvest, lead);
    });
}

void GetYPPagBianchDataResults2(Harvest& harvest, const QString& page) {
    ReadListings(harvest, page, false, [](WorkingText& text, Lead& lead) {
        ReadFields(text, listingFields, lead, &listing);
        lead.FullAddress = lead.Street + u" - " + lead.PostalCode + u' ' + lead.City;
    });
}

void GetPagBianchDetails(Harvest& harvest, Lead& lead) {
    QString page;
    if (!harvest.Pages.DownloadURL(lead.DetailsLink, page, false))
        return;
    WorkingText text(page);
    lead.Email = EmailFromContactForm(harvest, text);
    text.MoveTo(0);
    ReadFields(text, detailsFields, lead);
    lead.FullAddress = lead.Street + u" - " + lead.PostalCode + u' ' + lead.City + u" (" + lead.State + u')';
    text.MoveTo(0);
    if (text.Contains(mailto))
        lead.Email = CleanAndStrip(text.TakeBetween(mailto, quote));
}

} // namespace Brindle
