#include "adapters/Canada411.h"

#include "adapters/FieldTable.h"
#include "adapters/ListingSteps.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr ListingRules rules{
    .Country = u"Canada", .MapCountry = u"Canada", .DropsEmptyParentheses = true, .CleansPhone = true};

constexpr Marker listing(u"ltitle");

// Given, additional and family name stand in an element each; where one ends the next is set off by a blank.
QString PersonName(QStringView text) {
    QString result = text.toString();
    for (const QStringView removed : {u"<span itemprop=\"givenName\">", u"<span itemprop=\"additionalName\">",
                                      u"<span itemprop=\"familyName\">", u"  "})
        ReplaceAll(result, removed, u"");
    ReplaceAll(result, u"</span>", u" ");
    return Trim(result);
}

constexpr FieldRow businessPage[] = {
    {.From = u"itemprop=\"name\">", .To = u"</h1>", .Target = &Lead::Name},
    {.From = u"itemprop=\"streetAddress\">", .To = u"</div>", .Target = &Lead::Street, .Separator = u""},
    {.From = u"itemprop=\"addressLocality\">", .To = u"</span>", .Target = &Lead::City, .Separator = u", "},
    {.From = u"itemprop=\"addressRegion\">", .To = u"</span>", .Target = &Lead::State, .Separator = u", "},
    {.From = u"itemprop=\"postalCode\">", .To = u"</div>", .Target = &Lead::PostalCode, .Separator = u" "},
    {.From = u"itemprop=\"telephone\">", .To = u"</span>", .Target = &Lead::Phone, .Treatment = CleanAndStrip},
    {.From = u"mailto:", .To = u"\"", .Target = &Lead::Email, .Treatment = CleanAndStrip},
    {.From = u"itemprop=\"url\"", .Via = u"href=\"", .To = u"\"", .Target = &Lead::Website},
};

constexpr FieldRow personPage[] = {
    {.From = u"itemprop=\"name\">", .To = u"</h1>", .Target = &Lead::Name, .Treatment = PersonName},
    {.From = u"itemprop=\"telephone\">", .To = u"<", .Target = &Lead::Phone, .Treatment = CleanAndStrip},
    {.From = u"itemprop=\"streetAddress\">", .To = u"<", .Target = &Lead::Street, .Separator = u""},
    {.From = u"itemprop=\"addressLocality\">",
     .To = u"<",
     .Target = &Lead::City,
     .Separator = u", ",
     .OnlyBetween = true},
    {.From = u"itemprop=\"addressRegion\">", .To = u"<", .Target = &Lead::State, .Separator = u", "},
    {.From = u"itemprop=\"postalCode\">", .To = u"<", .Target = &Lead::PostalCode, .Separator = u" "},
    {.From = u"mailto:", .To = u"\"", .Target = &Lead::Email, .Treatment = CleanAndStrip},
    {.From = u"itemprop=\"url\"", .Via = u"href=\"", .To = u"\"", .Target = &Lead::Website},
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
    // The search form. The first marker takes the blank behind it, so the value is found only with another attribute in
    // between, as the site has it.
    if (text.Contains(u"name=q ")) {
        Skip(text, u"name=q ", u" value=");
        category = CleanMarkup(text.TakeBetween(u" value=", u"autocomplete=\"off\""));
        RememberCategory(harvest, category);
    }
    FallBackOnRemembered(harvest, category);
    return KeptBefore(category, u"name=");
}

void ReadListing(const Harvest& harvest, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing, u"href=\"");
    if (text.Contains(u"href=\"")) {
        lead.DetailsLink = text.TakeBetween(u"href=\"", u"\"").toString();
        ReplaceAll(lead.DetailsLink, u"&amp;", u"&");
        if (!ContainsExact(lead.DetailsLink, u"http:"))
            lead.DetailsLink.prepend(harvest.Site().DetailsBase);
    }
    lead.Name = CleanAndStrip(text.TakeBetween(u">", u"</A>"));
}

} // namespace

const SiteAdapter& Canada411() {
    static const SiteAdapter site{.Code = u"KVPN002002"_s,
                                  .Form = MarkupForm::Legacy,
                                  .Layouts = {{.InitList = u"total_result_found"_s,
                                               .EndList = u"global-footer"_s,
                                               .NextPageText = u"button_next>"_s,
                                               .Read = Get411CADataResults}}};
    return site;
}

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
