#include "adapters/InfobelItaly.h"

#include "adapters/FieldTable.h"
#include "adapters/ItalianSites.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr Marker listing(u"<DIV class=\"result-item");

QString CleanStripAndClean(QStringView text) {
    return CleanMarkup(CleanAndStrip(text));
}

constexpr FieldRow addressAndPhone[] = {
    {.From = u"<SPAN class=street-address",
     .Via = u">",
     .To = u"</SPAN>",
     .Target = &Lead::Street,
     .Treatment = CleanMarkup,
     .Separator = u""},
    {.From = u"<SPAN class=postal-code",
     .Via = u">",
     .To = u"</SPAN>",
     .Target = &Lead::PostalCode,
     .Treatment = CleanMarkup,
     .Separator = u", "},
    {.From = u"<SPAN class=locality",
     .Via = u">",
     .To = u"</SPAN>",
     .Target = &Lead::City,
     .Treatment = CleanMarkup,
     .Separator = u" "},
    {.From = u"<DIV class=\"data tel\"",
     .Via = u">",
     .To = u"</DIV>",
     .Target = &Lead::Phone,
     .Treatment = CleanAndStrip},
};

constexpr FieldRow emailRow[] = {
    {.From = u"mailto:", .To = u"\"", .Target = &Lead::Email, .Treatment = CleanStripAndClean},
};

constexpr FieldRow websiteRow[] = {
    {.From = u"url=", .To = u"\"", .Target = &Lead::Website, .Treatment = CleanMarkup, .Test = u"website"},
};

void ReadEmailAndWebsite(const Harvest& harvest, WorkingText& text, Lead& lead) {
    ReadFields(text, emailRow, lead, &listing);
    if (lead.Email == harvest.Site().ContactEmail)
        lead.Email.clear();
    ReadFields(text, websiteRow, lead, &listing);
}

// From the search form, which layout 1 has.
QString ReadCategory(Harvest& harvest, WorkingText& text) {
    QString category;
    if (text.Contains(u"search-field")) {
        Skip(text, u"search-field", u" value=");
        category = CleanMarkup(text.TakeBetween(u" value=", u">"));
    }
    RememberCategory(harvest, category);
    FallBackOnRemembered(harvest, category);
    return category;
}

void ReadHead1(const Harvest& harvest, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing, u"href=\"");
    if (text.Contains(u"href=\""))
        lead.DetailsLink = harvest.Site().DetailsBase + u"/it/italy/" + text.TakeBetween(u"href=\"", u"\"");
    Skip(text, u"fn org", u">");
    lead.Name = CleanAndStrip(text.TakeBetween(u">", u"</SPAN>"));
}

void ReadHead2(WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing, u"<SPAN class=fn>");
    lead.Name = CleanAndStrip(text.TakeBetween(u"<SPAN class=fn>", u"</SPAN>"));
    ReadFields(text, addressAndPhone, lead, &listing);
    const QString link = u"No Details URL (Unique Phone: " + lead.Phone + u')';
    lead.DetailsLink = Trim(link);
}

// Links of later pages repeat the folder that they stand in.
QString WithoutDoubledFolder(QString address) {
    ReplaceAll(address, u"/it/italy/it/italy/", u"/it/italy/");
    return address;
}

} // namespace

const SiteAdapter& InfobelItaly() {
    static const SiteAdapter site{.Code = u"KVPE001003"_s,
                                  .Form = MarkupForm::Legacy,
                                  .Layouts = {{.InitList = u"<H1 class=Pageh1>"_s,
                                               .EndList = u"id=footer"_s,
                                               .NextPageText = u"successivo</A>"_s,
                                               .NextPageDisabled = u"ec disabled>successivo"_s,
                                               .Read = GetYPInfobelDataResults1},
                                              {.InitList = u"span-4 people"_s,
                                               .EndList = u"id=footer"_s,
                                               .NextPageText = u"successivo</A>"_s,
                                               .NextPageDisabled = u"ec disabled>successivo"_s,
                                               .Read = GetYPInfobelDataResults2}},
                                  .PauseAfterPage = 5000,
                                  .PauseForNextPage = 7000,
                                  .MendLink = WithoutDoubledFolder};
    return site;
}

void GetYPInfobelDataResults(Harvest& harvest, const QString& page) {
    InfobelItaly().Read(harvest, harvest.State.CurrSite, page);
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
