#include "adapters/PagineBianche.h"

#include "adapters/FieldTable.h"
#include "adapters/ItalianSites.h"
#include "core/Delay.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

#include <QRandomGenerator>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// The site takes offence at visitors that ask for details pages in quick succession.
constexpr int longestWait = 2000;

constexpr Marker listing(u"org fn");

// A listing of layout 2.
constexpr FieldRow listingFields[] = {
    {.From = u"<span class=\"street-address\"", .Via = u">", .To = u"</span>", .Target = &Lead::Street},
    // "20121 Milano (MI)": the first word is the postal code.
    {.From = u"<span class=\"locality\"", .Via = u"> ", .To = u" ", .Target = &Lead::PostalCode},
    {.From = u" ", .To = u"</span>", .Target = &Lead::City, .AsAbove = true},
    {.From = u"tel:", .To = u"</span>", .Target = &Lead::Phone},
    {.From = u"fax:", .To = u"</span>", .Target = &Lead::Fax},
    {.From = u"class=\"site-tooltip\"", .To = u" href=\""},
    {.From = u"href=\"", .To = u"\"", .Target = &Lead::Website, .AsAbove = true},
    {.From = u"mailto:", .To = u"\"", .Target = &Lead::Email, .Treatment = CleanAndStrip},
};

// The details page of layout 1.
constexpr FieldRow detailsFields[] = {
    {.From = u"<h1 itemprop=\"name\">", .To = u"</h1>", .Target = &Lead::Name},
    {.From = u"itemprop=\"streetAddress\">", .To = u"</span>", .Target = &Lead::Street},
    // A hyphen sets the postal code off from the street; without one there is none, whatever the markup says.
    {.From = u"itemprop=\"postalCode\">", .To = u"<", .Target = &Lead::PostalCode, .Treatment = Trim, .Test = u"-"},
    {.From = u"itemprop=\"addressLocality\">", .To = u"(", .Target = &Lead::City},
    {.From = u"(", .To = u")", .Target = &Lead::State, .AsAbove = true},
    {.From = u"tel:", .To = u"</span>", .Target = &Lead::Phone, .Treatment = Trim},
    {.From = u"fax:", .To = u"</span>", .Target = &Lead::Fax},
    {.From = u"<a class=\"site-tooltip\" href=\"", .To = u"\"", .Target = &Lead::Website},
};

// From the search form, with and without quotes.
QString ReadCategory(Harvest& harvest, WorkingText& text) {
    QString category;
    if (text.Contains(u"id=\"input_cosa\"")) {
        Skip(text, u"id=\"input_cosa\"", u"value=\"");
        category = CleanMarkup(text.TakeBetween(u"value=\"", u"\""));
    } else if (text.Contains(u"id=input_cosa")) {
        Skip(text, u"id=input_cosa", u"value=");
        category = CleanMarkup(text.TakeBetween(u"value=", u" name"));
    }
    RememberCategory(harvest, category);
    FallBackOnRemembered(harvest, category);
    return category;
}

// Link and name, which both layouts have. Layout 1 cleans the link.
void ReadHead(const Harvest& harvest, WorkingText& text, Lead& lead, bool cleansLink) {
    StartListing(lead);
    Skip(text, listing, u"href=\"");
    if (text.Contains(u"href=\"")) {
        const QStringView link = text.TakeBetween(u"href=\"", u"\"");
        lead.DetailsLink = cleansLink ? CleanMarkup(link) : link.toString();
        Skip(text, u"\"", u">");
        if (!ContainsExact(lead.DetailsLink, u"http"))
            lead.DetailsLink.prepend(harvest.Site().DetailsBase + u'/');
    }
    lead.Name = StripAndClean(text.TakeBetween(u">", u"</a>"));
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
    const QString link = CleanMarkup(details.TakeBetween(u"class=\"web-contatti\"><a href=\"", u"\""));
    QString page;
    if (link.isEmpty() || !harvest.Pages.DownloadURL(QString(harvest.Site().DetailsBase + link), page, false))
        return {};
    return CleanMarkup(WorkingText(page).TakeBetween(u"name=\"dest_em\" value=\"", u"\""));
}

} // namespace

// Layout 2 has the same list markers as layout 1, so it is chosen by hand alone.
const SiteAdapter& PagineBianche() {
    static const SiteAdapter site{.Code = u"KVPE001001"_s,
                                  .Layouts = {{.InitList = u"listing-top"_s,
                                               .EndList = u"footer"_s,
                                               .NextPageText = u"Successivo"_s,
                                               .Read = GetYPPagBianchDataResults1},
                                              {.Read = GetYPPagBianchDataResults2}}};
    return site;
}

void GetYPPagBianchDataResults(Harvest& harvest, const QString& page) {
    PagineBianche().Read(harvest, harvest.State.CurrSite, page);
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
    if (text.Contains(u"mailto:"))
        lead.Email = CleanAndStrip(text.TakeBetween(u"mailto:", u"\""));
}

} // namespace Brindle
