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

const Marker tagEnd(u">");
const Marker tagBegin(u"<");
const Marker closingTag(u"</");
const Marker quote(u"\"");
const Marker href(u"href=\"");
const Marker mailto(u"mailto:");
const Marker nothing(u""); // a cut to it only moves behind its other marker

// The search form of layout 1.
const Marker searchLabel(u"Category or name");
const Marker searchValue(u"value=");

// A listing of layout 1.
const Marker listing1(u"serp-list-item organic");
const Marker linkWrapper(u"link-wrapper");

// A listing of layout 2.
const Marker listing2(u"link-wrapper clickstream-link");
const Marker itemName(u"itemprop=\"name\"");
const Marker paragraphEnd(u"</p>");

// The details page of layout 1.
const Marker name(u"<span class=\"name block\">");
const Marker phone(u"phone_number");
const Marker street(u"street-address");
const Marker locality(u"locality");
const Marker region(u"region");
const Marker postalCode(u"postal-code");
const Marker website(u"\"website\"");

const FieldRow detailsPage1[] = {
    {.From = name, .To = tagBegin, .Target = &Lead::Name},
    {.From = phone, .Via = &tagEnd, .To = tagBegin, .Target = &Lead::Phone, .Treatment = CleanAndStrip},
    {.From = street, .Via = &tagEnd, .To = tagBegin, .Target = &Lead::Street, .Separator = u""},
    {.From = locality, .Via = &tagEnd, .To = tagBegin, .Target = &Lead::City, .Separator = u", "},
    {.From = region, .Via = &tagEnd, .To = tagBegin, .Target = &Lead::State, .Separator = u", "},
    {.From = postalCode, .Via = &tagEnd, .To = tagBegin, .Target = &Lead::PostalCode, .Separator = u" "},
    {.From = website, .Via = &href, .To = quote, .Target = &Lead::Website},
    {.From = mailto, .To = quote, .Target = &Lead::Email, .Treatment = CleanAndStrip, .FromStart = true},
};

// The details page of layout 2.
const Marker nameBlock(u"name block");
const Marker telephone(u"\"tel:");
const Marker addressBlock(u"location-address");
const Marker addressPrimary(u"address-primary");
const Marker addressSecondary(u"address-secondary");
const Marker location(u"address-location");

QString ReadCategory(Harvest& harvest, WorkingText& text) {
    QString category;
    if (text.Contains(searchLabel)) {
        Skip(text, searchLabel, searchValue);
        category = CleanMarkup(text.TakeBetween(searchValue, tagEnd));
        RememberCategory(harvest, category);
    }
    FallBackOnRemembered(harvest, category);
    return KeptBefore(KeptBefore(category, u"name="), u"autocomplete");
}

void ReadListing1(Harvest& harvest, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing1, linkWrapper);
    Skip(text, linkWrapper, href);
    if (text.Contains(href)) {
        const SiteEntry& site = harvest.Site();
        lead.DetailsLink = text.TakeBetween(href, quote).toString();
        if (ContainsExact(lead.DetailsLink, site.RedirectHost))
            lead.DetailsLink = harvest.GetRedirect(lead.DetailsLink);
        Skip(text, quote, tagEnd);
        if (!ContainsExact(lead.DetailsLink, u"http://"))
            lead.DetailsLink.prepend(site.DetailsBase);
    }
    lead.Name = CleanAndStrip(text.TakeBetween(tagEnd, closingTag));
}

void ReadListing2(const Harvest& harvest, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing2, href);
    if (text.Contains(href)) {
        const SiteEntry& site = harvest.Site();
        lead.DetailsLink = text.TakeBetween(href, quote).toString();
        if (!lead.DetailsLink.isEmpty() && !ContainsExact(lead.DetailsLink, site.OwnHost))
            lead.DetailsLink.prepend(site.DetailsBase);
    }
    Skip(text, itemName, tagEnd);
    lead.Name = CleanAndStrip(text.TakeBetween(tagEnd, paragraphEnd));
}

void ReadPhones(WorkingText& text, Lead& lead) {
    for (bool first = true; text.Contains(telephone); first = false) {
        if (!first)
            lead.Phone += u", ";
        lead.Phone += CleanMarkup(text.TakeBetween(telephone, quote));
    }
}

void ReadStreet(WorkingText& text, Lead& lead) {
    Skip(text, addressBlock, nothing);
    Skip(text, addressPrimary, nothing);
    const QStringView primary = text.TakeBetween(tagEnd, closingTag);
    Skip(text, addressSecondary, nothing);
    const QStringView secondary = text.TakeBetween(tagEnd, closingTag);
    const QString both = primary + u' ' + secondary;
    lead.Street = Trim(both);
    lead.FullAddress += lead.Street;
}

// "Springfield, IL 62701".
void ReadLocation(WorkingText& text, Lead& lead) {
    Skip(text, location, tagEnd);
    const QStringList parts = SplitText(text.TakeBetween(tagEnd, closingTag), u",");
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

void GetYPUSDataResults(Harvest& harvest, const QString& page) {
    if (harvest.State.CurrSite == 1)
        GetYPUSDataResults1(harvest, page);
    else if (harvest.State.CurrSite == 2)
        GetYPUSDataResults2(harvest, page);
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
    if (text.Contains(nameBlock)) {
        Skip(text, nameBlock, tagEnd);
        lead.Name = StripTags(text.TakeBetween(tagEnd, tagBegin));
    }
    ReadPhones(text, lead);
    if (text.Contains(addressBlock))
        ReadStreet(text, lead);
    if (text.Contains(location))
        ReadLocation(text, lead);
    if (text.Contains(mailto))
        lead.Email = CleanAndStrip(text.TakeBetween(mailto, quote));
}

} // namespace Brindle
