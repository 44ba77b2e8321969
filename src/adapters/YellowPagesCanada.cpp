#include "adapters/YellowPagesCanada.h"

#include "adapters/FieldTable.h"
#include "adapters/ListingSteps.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr ListingRules layout1Rules{.Country = u"Canada",
                                    .MapCountry = u"Canada",
                                    .DropsOddWebsites = true,
                                    .CleansCategory = true,
                                    .CountsExtracted = true};
constexpr ListingRules layout2Rules{
    .Country = u"Canada", .MapCountry = u"Canada", .DropsEmptyParentheses = true, .CleansCategory = true};

// Layout 1: a listing, and its title.
constexpr Marker listing(u"listingDetail");
constexpr Marker titleLine(u"<H3 class=listingTitleLine");
// Layout 2: a listing.
constexpr Marker listingInfo(u"listing_info");

QString Address(QStringView text) {
    QString address = CleanMarkup(text);
    ReplaceAll(address, u"%40", u"@");
    return address;
}

constexpr FieldRow contactFields[] = {
    {.From = u"<A class=urlLink",
     .Via = u"href=\"/gourl/",
     .To = u"\"",
     .Target = &Lead::Website,
     .Treatment = CleanMarkup},
    {.From = u"<A class=emailLink",
     .Via = u"mailto:",
     .To = u"?subject=",
     .Target = &Lead::Email,
     .Treatment = Address},
};

// From the search form, which layout 1 has.
QString ReadCategory(Harvest& harvest, WorkingText& text) {
    QString category;
    if (text.ContainsFolded(u"id=ypgheaderwhat")) {
        Skip(text, u"id=ypgheaderwhat", u"value=");
        category = CleanMarkup(text.TakeBetween(u"value=", u" name"));
        RememberCategory(harvest, category);
        category = KeptBefore(category, u"autocomplete");
    }
    FallBackOnRemembered(harvest, category);
    return category;
}

// What stands in the element that `marker` opens.
QString ReadElement(WorkingText& text, const Marker& marker) {
    Skip(text, marker, u">");
    // The cut begins at the ">" itself.
    return CleanMarkup(text.TakeBetween(u">", u"<"));
}

// "12 Main St, Toronto, ON M5V 2T6": the last part holds province and postal code, the one before it the city.
void SplitAddress(Lead& lead) {
    QStringView rest = lead.FullAddress;
    bool partsRemain = true;
    const auto takeLastPart = [&] {
        const qsizetype comma = rest.lastIndexOf(u',');
        const QStringView part = rest.sliced(comma + 1);
        rest = rest.first(std::max<qsizetype>(comma, 0));
        partsRemain = comma >= 0;
        return part;
    };
    const QStringView last = TrimmedView(takeLastPart());
    const qsizetype firstBlank = last.indexOf(u' ');
    const qsizetype lastBlank = last.lastIndexOf(u' ');
    if (last.size() < 3) {
        lead.State = last.toString();
    } else if (firstBlank >= 0 && firstBlank < lastBlank && last.indexOf(u' ', firstBlank + 1) == lastBlank) {
        const QStringView half = last.sliced(firstBlank + 1, lastBlank - firstBlank - 1);
        lead.State = Trim(last.first(firstBlank));
        lead.PostalCode = Trim(half) + u' ' + TrimmedView(last.sliced(lastBlank + 1));
    } else {
        lead.PostalCode = last.toString();
    }
    if (partsRemain)
        lead.City = takeLastPart().toString();
    lead.Street = rest.toString();
}

void ReadListing1(const QString& base, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing, titleLine);
    if (text.Contains(titleLine)) {
        lead.DetailsLink = base + text.TakeBetween(u"href=\"", u"\"");
        ReplaceAll(lead.DetailsLink, u"%2C", u",");
        ReplaceAll(lead.DetailsLink, u"&amp;", u"&");
        Skip(text, u"\"", u"<SPAN class=listingTitle>");
        lead.Name = CleanMarkup(text.TakeBetween(u"<SPAN class=listingTitle>", u"</SPAN>"));
    }

    // The phone stands before or behind the address, so looking for it must not move the cursor.
    const qsizetype beforePhone = text.Position();
    if (text.Belongs(u"<DIV class=phoneNumber", titleLine))
        lead.Phone = ReadElement(text, u"<DIV class=phoneNumber");
    else if (text.Belongs(u"<DIV class=\"phoneNumber", titleLine))
        lead.Phone = ReadElement(text, u"<DIV class=\"phoneNumber");
    text.MoveTo(beforePhone);

    if (text.Belongs(u"<DIV class=address", titleLine)) {
        lead.FullAddress = ReadElement(text, u"<DIV class=address");
        if (!TrimmedView(lead.FullAddress).isEmpty())
            SplitAddress(lead);
    }
    if (lead.Street.isEmpty() && !lead.City.isEmpty())
        lead.Street = std::exchange(lead.City, {});
    if (lead.Street.isEmpty() && !lead.PostalCode.isEmpty())
        lead.Street = std::exchange(lead.PostalCode, {});

    ReadFields(text, contactFields, lead, &titleLine);
}

void ReadListing2(Harvest& harvest, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listingInfo, u"href=\"");
    if (text.Contains(u"href=\"")) {
        const SiteEntry& site = harvest.Site();
        lead.DetailsLink = text.TakeBetween(u"href=\"", u"\"").toString();
        if (!lead.DetailsLink.isEmpty() && !ContainsExact(lead.DetailsLink, site.OwnHost))
            lead.DetailsLink.prepend(site.DetailsBase);
        if (ContainsExact(lead.DetailsLink, site.RedirectHost))
            lead.DetailsLink = harvest.GetRedirect(lead.DetailsLink);
        Skip(text, u"\"", u">");
    }
    lead.Name = StripTags(CleanMarkup(text.TakeBetween(u">", u"</A>")));
    ReplaceAll(lead.DetailsLink, u"&amp;", u"&");
}

} // namespace

const SiteAdapter& YellowPagesCanada() {
    static const SiteAdapter site{
        .Code = u"KVPN002001"_s,
        .Form = MarkupForm::Legacy,
        .Layouts = {
            {.InitList = u"<DIV class=\"ypgResultsTop"_s,
             .EndList = u"<DIV class=ypgFooterLegal"_s,
             .NextPageText = u"Next</"_s,
             .LinksToOwnHome = true,
             .Read = GetYPCADataResults1},
            {.InitList = u"main"_s, .EndList = u"footer"_s, .NextPageText = u"Next</"_s, .Read = GetYPCADataResults2}}};
    return site;
}

void GetYPCADataResults(Harvest& harvest, const QString& page) {
    YellowPagesCanada().Read(harvest, harvest.State.CurrSite, page);
}

void GetYPCADataResults1(Harvest& harvest, const QString& page) {
    WorkingText text(page);
    Lead lead;
    lead.Category = ReadCategory(harvest, text);
    const QString base = harvest.SelectedBase();
    ForEachListing(
        harvest, text, [&] { return text.Contains(listing); },
        [&] {
            ReadListing1(base, text, lead);
            return KeepLead(harvest, layout1Rules, lead);
        });
}

void GetYPCADataResults2(Harvest& harvest, const QString& page) {
    WorkingText text(page);
    Lead lead;
    ForEachListing(
        harvest, text, [&] { return text.Contains(listingInfo); },
        [&] {
            ReadListing2(harvest, text, lead);
            if (!lead.DetailsLink.isEmpty()) {
                if (IsListed(harvest, lead.DetailsLink))
                    return true;
                GetCADetails2(harvest, lead);
            }
            return KeepLead(harvest, layout2Rules, lead);
        });
}

void GetCADetails2(Harvest& harvest, Lead& lead) {
    QString page;
    if (!harvest.Pages.DownloadURL(lead.DetailsLink, page, false))
        return;
    WorkingText text(page);
    if (text.Contains(u"<h1 class=\"fn n listing_name\">"))
        lead.Name = StripTags(text.TakeBetween(u"<h1 class=\"fn n listing_name\">", u"</h1>"));
    if (text.Contains(u"single_result_phone")) {
        Skip(text, u"single_result_phone", u">");
        lead.Phone = StripTags(CleanMarkup(text.TakeBetween(u">", u"<")));
    }
    if (text.Contains(u"<div class=\"address adr\">")) {
        // From here on only the block is read; that goes for the e-mail too.
        text = WorkingText(text.TakeBetween(u"<div class=\"address adr\">", u"</div>"));
        lead.Street = StripTags(text.TakeBetween(u"<p>", u"</p>"));
        lead.FullAddress = lead.Street;
        const auto append = [&](const Marker& marker, QString& field, QStringView separator) {
            if (text.Contains(marker))
                field = text.TakeBetween(marker, u"</span>").toString();
            if (!field.isEmpty())
                lead.FullAddress += separator + field;
        };
        append(u"<span class=\"locality\">", lead.City, u", ");
        append(u"<span class=\"region\">", lead.State, u", ");
        append(u"<span class=\"postal-code\">", lead.PostalCode, u" ");
    }
    if (TrimmedView(lead.FullAddress).startsWith(u','))
        lead.FullAddress.remove(0, 2);
    ReplaceAll(lead.Phone, u"Home", u"");
    if (ContainsExact(page, u"mailto:"))
        lead.Email = StripTags(CleanMarkup(text.TakeBetween(u"mailto:", u"\"")));
}

} // namespace Brindle
