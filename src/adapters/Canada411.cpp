#include "adapters/Canada411.h"

#include "adapters/FieldTable.h"
#include "adapters/ListingSteps.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

namespace Brindle {

namespace {

constexpr ListingRules rules{
    .Country = u"Canada", .MapCountry = u"Canada", .DropsEmptyParentheses = true, .CleansPhone = true};

const Marker tagEnd(u">");
const Marker tagBegin(u"<");
const Marker quote(u"\"");
const Marker href(u"href=\"");

// The search form. Its first marker takes the blank behind it, so the value is found only with another attribute in
// between, as the site has it.
const Marker searchName(u"name=q ");
const Marker searchValue(u" value=");
const Marker searchValueEnd(u"autocomplete=\"off\"");

// A listing.
const Marker listing(u"ltitle");
const Marker linkEnd(u"</A>");

// A details page.
const Marker name(u"itemprop=\"name\">");
const Marker telephone(u"itemprop=\"telephone\">");
const Marker street(u"itemprop=\"streetAddress\">");
const Marker locality(u"itemprop=\"addressLocality\">");
const Marker region(u"itemprop=\"addressRegion\">");
const Marker postalCode(u"itemprop=\"postalCode\">");
const Marker mailto(u"mailto:");
const Marker website(u"itemprop=\"url\"");
const Marker headingEnd(u"</h1>");
const Marker divEnd(u"</div>");
const Marker spanEnd(u"</span>");

// Given, additional and family name stand in an element each; where one ends the next is set off by a blank.
QString PersonName(QStringView text) {
    QString result = text.toString();
    for (const QStringView removed : {u"<span itemprop=\"givenName\">", u"<span itemprop=\"additionalName\">",
                                      u"<span itemprop=\"familyName\">", u"  "})
        ReplaceAll(result, removed, u"");
    ReplaceAll(result, u"</span>", u" ");
    return Trim(result);
}

const FieldRow businessPage[] = {
    {.From = name, .To = headingEnd, .Target = &Lead::Name},
    {.From = street, .To = divEnd, .Target = &Lead::Street, .Separator = u""},
    {.From = locality, .To = spanEnd, .Target = &Lead::City, .Separator = u", "},
    {.From = region, .To = spanEnd, .Target = &Lead::State, .Separator = u", "},
    {.From = postalCode, .To = divEnd, .Target = &Lead::PostalCode, .Separator = u" "},
    {.From = telephone, .To = spanEnd, .Target = &Lead::Phone, .Treatment = CleanAndStrip},
    {.From = mailto, .To = quote, .Target = &Lead::Email, .Treatment = CleanAndStrip},
    {.From = website, .Via = &href, .To = quote, .Target = &Lead::Website},
};

const FieldRow personPage[] = {
    {.From = name, .To = headingEnd, .Target = &Lead::Name, .Treatment = PersonName},
    {.From = telephone, .To = tagBegin, .Target = &Lead::Phone, .Treatment = CleanAndStrip},
    {.From = street, .To = tagBegin, .Target = &Lead::Street, .Separator = u""},
    {.From = locality, .To = tagBegin, .Target = &Lead::City, .Separator = u", ", .OnlyBetween = true},
    {.From = region, .To = tagBegin, .Target = &Lead::State, .Separator = u", "},
    {.From = postalCode, .To = tagBegin, .Target = &Lead::PostalCode, .Separator = u" "},
    {.From = mailto, .To = quote, .Target = &Lead::Email, .Treatment = CleanAndStrip},
    {.From = website, .Via = &href, .To = quote, .Target = &Lead::Website},
};

void ReadDetails(Harvest& harvest, std::span<const FieldRow> rows, Lead& lead) {
    QString page;
    if (!harvest.Pages.DownloadURL(lead.DetailsLink, page, false))
        return;
    WorkingText text(page);
    ReadFields(text, rows, lead);
    // What is no web page, or a secure one, counts as no website.
    if (ContainsExact(lead.Website, u".pdf") || !ContainsExact(lead.Website, u"http:"))
        lead.Website.clear();
}

QString ReadCategory(Harvest& harvest, WorkingText& text) {
    QString category;
    if (text.Contains(searchName)) {
        Skip(text, searchName, searchValue);
        category = CleanMarkup(text.TakeBetween(searchValue, searchValueEnd));
        RememberCategory(harvest, category);
    }
    FallBackOnRemembered(harvest, category);
    return KeptBefore(category, u"name=");
}

void ReadListing(const Harvest& harvest, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing, href);
    if (text.Contains(href)) {
        lead.DetailsLink = text.TakeBetween(href, quote).toString();
        ReplaceAll(lead.DetailsLink, u"&amp;", u"&");
        if (!ContainsExact(lead.DetailsLink, u"http:"))
            lead.DetailsLink.prepend(harvest.Site().DetailsBase);
    }
    lead.Name = CleanAndStrip(text.TakeBetween(tagEnd, linkEnd));
}

} // namespace

void Get411CADataResults(Harvest& harvest, const QString& page) {
    WorkingText text(page);
    Lead lead;
    lead.Category = ReadCategory(harvest, text);
    ForEachListing(
        harvest, text, [&] { return text.Contains(listing); },
        [&] {
            ReadListing(harvest, text, lead);
            const bool invitation = ContainsExact(lead.Name, u"Add ");
            if (invitation || IsListed(harvest, lead.DetailsLink))
                return true;
            if (ContainsExact(lead.DetailsLink, u"person/"))
                Get411CADetails2(harvest, lead);
            else if (!lead.DetailsLink.isEmpty())
                Get411CADetails1(harvest, lead);
            return KeepLead(harvest, rules, lead);
        });
}

void Get411CADetails1(Harvest& harvest, Lead& lead) {
    ReadDetails(harvest, businessPage, lead);
}

void Get411CADetails2(Harvest& harvest, Lead& lead) {
    ReadDetails(harvest, personPage, lead);
}

} // namespace Brindle
