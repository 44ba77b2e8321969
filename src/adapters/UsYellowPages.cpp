#include "adapters/UsYellowPages.h"

#include "adapters/FieldTable.h"
#include "adapters/ListingSteps.h"
#include "core/Errors.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr ListingRules rules{
    .Country = u"United States", .MapCountry = u"US", .DropsEmptyParentheses = true, .CleansPhone = true};

constexpr Marker listing1(u"serp-list-item organic");
constexpr Marker listing2(u"link-wrapper clickstream-link");

constexpr FieldRow detailsPage1[] = {
    {.From = u"<span class=\"name block\">", .To = u"<", .Target = &Lead::Name},
    {.From = u"phone_number", .Via = u">", .To = u"<", .Target = &Lead::Phone, .Treatment = CleanAndStrip},
    {.From = u"street-address", .Via = u">", .To = u"<", .Target = &Lead::Street, .Separator = u""},
    {.From = u"locality", .Via = u">", .To = u"<", .Target = &Lead::City, .Separator = u", "},
    {.From = u"region", .Via = u">", .To = u"<", .Target = &Lead::State, .Separator = u", "},
    {.From = u"postal-code", .Via = u">", .To = u"<", .Target = &Lead::PostalCode, .Separator = u" "},
    {.From = u"\"website\"", .Via = u"href=\"", .To = u"\"", .Target = &Lead::Website},
    {.From = u"mailto:", .To = u"\"", .Target = &Lead::Email, .Treatment = CleanAndStrip, .FromStart = true},
};

// From the search form, which layout 1 has.
QString ReadCategory(Harvest& harvest, WorkingText& text) {
    QString category;
    if (text.Contains(u"Category or name")) {
        Skip(text, u"Category or name", u"value=");
        category = CleanMarkup(text.TakeBetween(u"value=", u">"));
        RememberCategory(harvest, category);
    }
    FallBackOnRemembered(harvest, category);
    return KeptBefore(KeptBefore(category, u"name="), u"autocomplete");
}

void ReadListing1(Harvest& harvest, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing1, u"link-wrapper");
    Skip(text, u"link-wrapper", u"href=\"");
    if (text.Contains(u"href=\"")) {
        const SiteEntry& site = harvest.Site();
        lead.DetailsLink = text.TakeBetween(u"href=\"", u"\"").toString();
        if (ContainsExact(lead.DetailsLink, site.RedirectHost))
            lead.DetailsLink = harvest.GetRedirect(lead.DetailsLink);
        Skip(text, u"\"", u">");
        if (!ContainsExact(lead.DetailsLink, u"http://"))
            lead.DetailsLink.prepend(site.DetailsBase);
    }
    lead.Name = CleanAndStrip(text.TakeBetween(u">", u"</"));
}

void ReadListing2(const Harvest& harvest, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing2, u"href=\"");
    if (text.Contains(u"href=\"")) {
        const SiteEntry& site = harvest.Site();
        lead.DetailsLink = text.TakeBetween(u"href=\"", u"\"").toString();
        if (!lead.DetailsLink.isEmpty() && !ContainsExact(lead.DetailsLink, site.OwnHost))
            lead.DetailsLink.prepend(site.DetailsBase);
    }
    Skip(text, u"itemprop=\"name\"", u">");
    lead.Name = CleanAndStrip(text.TakeBetween(u">", u"</p>"));
}

void ReadPhones(WorkingText& text, Lead& lead) {
    for (bool first = true; text.Contains(u"\"tel:"); first = false) {
        if (!first)
            lead.Phone += u", ";
        lead.Phone += CleanMarkup(text.TakeBetween(u"\"tel:", u"\""));
    }
}

// A cut to an empty text only moves behind its first marker.
void ReadStreet(WorkingText& text, Lead& lead) {
    Skip(text, u"location-address", u"");
    Skip(text, u"address-primary", u"");
    const QStringView primary = text.TakeBetween(u">", u"</");
    Skip(text, u"address-secondary", u"");
    const QStringView secondary = text.TakeBetween(u">", u"</");
    const QString both = primary + u' ' + secondary;
    lead.Street = Trim(both);
    lead.FullAddress += lead.Street;
}

// "Springfield, IL 62701".
void ReadLocation(WorkingText& text, Lead& lead) {
    Skip(text, u"address-location", u">");
    const QStringList parts = SplitText(text.TakeBetween(u">", u"</"), u",");
    lead.City = parts[0];
    if (parts.size() < 2)
        throw IndexError(u"the location of %1 has no comma"_s.arg(lead.DetailsLink));
    const QStringList words = SplitText(TrimmedView(parts[1]), u" ");
    if (!lead.City.isEmpty())
        lead.FullAddress += u", " + lead.City;
    lead.State = Trim(words.value(0));
    lead.PostalCode = Trim(words.value(1));
    if (!lead.State.isEmpty() && !lead.PostalCode.isEmpty())
        lead.FullAddress += u", " + lead.State + u' ' + lead.PostalCode;
}

} // namespace

const SiteAdapter& UsYellowPages() {
    static const SiteAdapter site{.Code = u"KVPN001001"_s,
                                  .Layouts = {{.InitList = u"business-serp"_s,
                                               .EndList = u"footer-wrapper"_s,
                                               .NextPageText = u"Next<"_s,
                                               .Read = GetYPUSDataResults1},
                                              {.InitList = u"row-fluid"_s,
                                               .EndList = u"footer-wrapper"_s,
                                               .NextPageText = u"Next</"_s,
                                               .Read = GetYPUSDataResults2}}};
    return site;
}

void GetYPUSDataResults(Harvest& harvest, const QString& page) {
    UsYellowPages().Read(harvest, harvest.State.CurrSite, page);
}

void GetYPUSDataResults1(Harvest& harvest, const QString& page) {
    WorkingText text(page);
    Lead lead;
    lead.Category = ReadCategory(harvest, text);
    ForEachListing(
        harvest, text, [&] { return text.Contains(listing1); },
        [&] {
            ReadListing1(harvest, text, lead);
            if (!lead.DetailsLink.isEmpty()) {
                if (IsListed(harvest, lead.DetailsLink))
                    return true;
                GetUSDetails1(harvest, lead);
            }
            return KeepLead(harvest, rules, lead);
        });
}

void GetYPUSDataResults2(Harvest& harvest, const QString& page) {
    WorkingText text(page);
    Lead lead;
    ForEachListing(
        harvest, text, [&] { return text.Contains(listing2); },
        [&] {
            ReadListing2(harvest, text, lead);
            if (!lead.DetailsLink.isEmpty())
                GetUSDetails2(harvest, lead);
            return KeepLead(harvest, rules, lead);
        });
}

void GetUSDetails1(Harvest& harvest, Lead& lead) {
    QString page;
    if (!harvest.Pages.DownloadURL(lead.DetailsLink, page, false))
        return;
    WorkingText text(page);
    ReadFields(text, detailsPage1, lead);
}

void GetUSDetails2(Harvest& harvest, Lead& lead) {
    QString page;
    if (!harvest.Pages.DownloadURL(lead.DetailsLink, page, false))
        return;
    WorkingText text(page);
    if (text.Contains(u"name block")) {
        Skip(text, u"name block", u">");
        lead.Name = StripTags(text.TakeBetween(u">", u"<"));
    }
    ReadPhones(text, lead);
    if (text.Contains(u"location-address"))
        ReadStreet(text, lead);
    if (text.Contains(u"address-location"))
        ReadLocation(text, lead);
    if (text.Contains(u"mailto:"))
        lead.Email = CleanAndStrip(text.TakeBetween(u"mailto:", u"\""));
}

} // namespace Brindle
