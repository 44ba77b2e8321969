#include "adapters/InfobelItaly.h"

#include "adapters/FieldTable.h"
#include "adapters/ItalianSites.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

namespace Brindle {

namespace {

const Marker tagEnd(u">");
const Marker quote(u"\"");
const Marker href(u"href=\"");
const Marker spanEnd(u"</SPAN>");
const Marker divEnd(u"</DIV>");

// The search form of layout 1.
const Marker searchField(u"search-field");
const Marker searchValue(u" value=");

// A listing.
const Marker listing(u"<DIV class=\"result-item");
const Marker name1(u"fn org");
const Marker name2(u"<SPAN class=fn>");
const Marker street(u"<SPAN class=street-address");
const Marker postalCode(u"<SPAN class=postal-code");
const Marker locality(u"<SPAN class=locality");
const Marker telephone(u"<DIV class=\"data tel\"");
const Marker mailto(u"mailto:");
const Marker websiteLabel(u"website");
const Marker websiteUrl(u"url=");

QString CleanStripAndClean(QStringView text) {
    return CleanMarkup(CleanAndStrip(text));
}

const FieldRow addressAndPhone[] = {
    {.From = street,
     .Via = &tagEnd,
     .To = spanEnd,
     .Target = &Lead::Street,
     .Treatment = CleanMarkup,
     .Separator = u""},
    {.From = postalCode,
     .Via = &tagEnd,
     .To = spanEnd,
     .Target = &Lead::PostalCode,
     .Treatment = CleanMarkup,
     .Separator = u", "},
    {.From = locality,
     .Via = &tagEnd,
     .To = spanEnd,
     .Target = &Lead::City,
     .Treatment = CleanMarkup,
     .Separator = u" "},
    {.From = telephone, .Via = &tagEnd, .To = divEnd, .Target = &Lead::Phone, .Treatment = CleanAndStrip},
};

const FieldRow emailRow[] = {
    {.From = mailto, .To = quote, .Target = &Lead::Email, .Treatment = CleanStripAndClean},
};

const FieldRow websiteRow[] = {
    {.From = websiteUrl, .To = quote, .Target = &Lead::Website, .Treatment = CleanMarkup, .Test = &websiteLabel},
};

void ReadEmailAndWebsite(const Harvest& harvest, WorkingText& text, Lead& lead) {
    ReadFields(text, emailRow, lead, &listing);
    if (lead.Email == harvest.Site().ContactEmail)
        lead.Email.clear();
    ReadFields(text, websiteRow, lead, &listing);
}

QString ReadCategory(Harvest& harvest, WorkingText& text) {
    QString category;
    if (text.Contains(searchField)) {
        Skip(text, searchField, searchValue);
        category = CleanMarkup(text.TakeBetween(searchValue, tagEnd));
    }
    RememberCategory(harvest, category);
    FallBackOnRemembered(harvest, category);
    return category;
}

void ReadHead1(const Harvest& harvest, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing, href);
    if (text.Contains(href))
        lead.DetailsLink = harvest.Site().DetailsBase + u"/it/italy/" + text.TakeBetween(href, quote);
    Skip(text, name1, tagEnd);
    lead.Name = CleanAndStrip(text.TakeBetween(tagEnd, spanEnd));
}

void ReadHead2(WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing, name2);
    lead.Name = CleanAndStrip(text.TakeBetween(name2, spanEnd));
    ReadFields(text, addressAndPhone, lead, &listing);
    const QString link = u"No Details URL (Unique Phone: " + lead.Phone + u')';
    lead.DetailsLink = Trim(link);
}

} // namespace

void GetYPInfobelDataResults(Harvest& harvest, const QString& page) {
    if (harvest.State.CurrSite == 1)
        GetYPInfobelDataResults1(harvest, page);
    else if (harvest.State.CurrSite == 2)
        GetYPInfobelDataResults2(harvest, page);
}

void GetYPInfobelDataResults1(Harvest& harvest, const QString& page) {
    WorkingText text(page);
    Lead lead;
    lead.Category = ReadCategory(harvest, text);
    ForEachListing(
        harvest, text, [&] { return text.Contains(listing); },
        [&] {
            ReadHead1(harvest, text, lead);
            if (IsListed(harvest, lead.DetailsLink))
                return true;
            ReadFields(text, addressAndPhone, lead, &listing);
            ReadEmailAndWebsite(harvest, text, lead);
            return KeepLead(harvest, ItalianRules, lead);
        });
}

void GetYPInfobelDataResults2(Harvest& harvest, const QString& page) {
    WorkingText text(page);
    Lead lead;
    ForEachListing(
        harvest, text, [&] { return text.Contains(listing); },
        [&] {
            ReadHead2(text, lead);
            if (IsListed(harvest, lead.DetailsLink))
                return true;
            ReadEmailAndWebsite(harvest, text, lead);
            return KeepLead(harvest, ItalianRules, lead);
        });
}

} // namespace Brindle
