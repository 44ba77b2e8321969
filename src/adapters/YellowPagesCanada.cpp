#include "adapters/YellowPagesCanada.h"

#include "adapters/ListingSteps.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

namespace Brindle {

namespace {

constexpr ListingRules layout1Rules{.Country = u"Canada",
                                    .MapCountry = u"Canada",
                                    .DropsOddWebsites = true,
                                    .CleansCategory = true,
                                    .CountsExtracted = true};
constexpr ListingRules layout2Rules{
    .Country = u"Canada", .MapCountry = u"Canada", .DropsEmptyParentheses = true, .CleansCategory = true};

const Marker tagEnd(u">");
const Marker tagBegin(u"<");
const Marker quote(u"\"");
const Marker href(u"href=\"");
const Marker mailto(u"mailto:");

// The search form of layout 1.
const Marker searchWhat(u"id=ypgheaderwhat");
const Marker searchValue(u"value=");
const Marker searchName(u" name");

// A listing of layout 1.
const Marker listing(u"listingDetail");
const Marker titleLine(u"<H3 class=listingTitleLine");
const Marker title(u"<SPAN class=listingTitle>");
const Marker titleEnd(u"</SPAN>");
const Marker phone(u"<DIV class=phoneNumber");
const Marker quotedPhone(u"<DIV class=\"phoneNumber");
const Marker address(u"<DIV class=address");
const Marker website(u"<A class=urlLink");
const Marker websiteLink(u"href=\"/gourl/");
const Marker email(u"<A class=emailLink");
const Marker emailSubject(u"?subject=");

// A listing of layout 2.
const Marker listingInfo(u"listing_info");
const Marker linkEnd(u"</A>");

// The details page of layout 2.
const Marker detailsName(u"<h1 class=\"fn n listing_name\">");
const Marker detailsNameEnd(u"</h1>");
const Marker detailsPhone(u"single_result_phone");
const Marker addressBlock(u"<div class=\"address adr\">");
const Marker addressBlockEnd(u"</div>");
const Marker paragraph(u"<p>");
const Marker paragraphEnd(u"</p>");
const Marker locality(u"<span class=\"locality\">");
const Marker region(u"<span class=\"region\">");
const Marker postalCode(u"<span class=\"postal-code\">");
const Marker spanEnd(u"</span>");

QString ReadCategory(Harvest& harvest, WorkingText& text) {
    QString category;
    if (text.ContainsFolded(searchWhat)) {
        Skip(text, searchWhat, searchValue);
        category = CleanMarkup(text.TakeBetween(searchValue, searchName));
        RememberCategory(harvest, category);
        category = KeptBefore(category, u"autocomplete");
    }
    FallBackOnRemembered(harvest, category);
    return category;
}

// What stands in the element that `marker` opens.
QString ReadElement(WorkingText& text, const Marker& marker) {
    Skip(text, marker, tagEnd);
    // The cut begins at the ">" itself.
    return CleanMarkup(text.TakeBetween(tagEnd, tagBegin));
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
        lead.DetailsLink = base + text.TakeBetween(href, quote);
        ReplaceAll(lead.DetailsLink, u"%2C", u",");
        ReplaceAll(lead.DetailsLink, u"&amp;", u"&");
        Skip(text, quote, title);
        lead.Name = CleanMarkup(text.TakeBetween(title, titleEnd));
    }

    // The phone stands before or behind the address, so looking for it must not move the cursor.
    const qsizetype beforePhone = text.Position();
    if (text.Belongs(phone, titleLine))
        lead.Phone = ReadElement(text, phone);
    else if (text.Belongs(quotedPhone, titleLine))
        lead.Phone = ReadElement(text, quotedPhone);
    text.MoveTo(beforePhone);

    if (text.Belongs(address, titleLine)) {
        lead.FullAddress = ReadElement(text, address);
        if (!TrimmedView(lead.FullAddress).isEmpty())
            SplitAddress(lead);
    }
    if (lead.Street.isEmpty() && !lead.City.isEmpty())
        lead.Street = std::exchange(lead.City, {});
    if (lead.Street.isEmpty() && !lead.PostalCode.isEmpty())
        lead.Street = std::exchange(lead.PostalCode, {});

    if (text.Belongs(website, titleLine)) {
        Skip(text, website, websiteLink);
        lead.Website = CleanMarkup(text.TakeBetween(websiteLink, quote));
    }
    if (text.Belongs(email, titleLine)) {
        Skip(text, email, mailto);
        lead.Email = CleanMarkup(text.TakeBetween(mailto, emailSubject));
        ReplaceAll(lead.Email, u"%40", u"@");
    }
}

void ReadListing2(Harvest& harvest, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listingInfo, href);
    if (text.Contains(href)) {
        const SiteEntry& site = harvest.Site();
        lead.DetailsLink = text.TakeBetween(href, quote).toString();
        if (!lead.DetailsLink.isEmpty() && !ContainsExact(lead.DetailsLink, site.OwnHost))
            lead.DetailsLink.prepend(site.DetailsBase);
        if (ContainsExact(lead.DetailsLink, site.RedirectHost))
            lead.DetailsLink = harvest.GetRedirect(lead.DetailsLink);
        Skip(text, quote, tagEnd);
    }
    lead.Name = StripTags(CleanMarkup(text.TakeBetween(tagEnd, linkEnd)));
    ReplaceAll(lead.DetailsLink, u"&amp;", u"&");
}

} // namespace

void GetYPCADataResults(Harvest& harvest, const QString& page) {
    if (harvest.State.CurrSite == 1)
        GetYPCADataResults1(harvest, page);
    else if (harvest.State.CurrSite == 2)
        GetYPCADataResults2(harvest, page);
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
    if (text.Contains(detailsName))
        lead.Name = StripTags(text.TakeBetween(detailsName, detailsNameEnd));
    if (text.Contains(detailsPhone)) {
        Skip(text, detailsPhone, tagEnd);
        lead.Phone = StripTags(CleanMarkup(text.TakeBetween(tagEnd, tagBegin)));
    }
    if (text.Contains(addressBlock)) {
        // From here on only the block is read; that goes for the e-mail too.
        text = WorkingText(text.TakeBetween(addressBlock, addressBlockEnd));
        lead.Street = StripTags(text.TakeBetween(paragraph, paragraphEnd));
        lead.FullAddress = lead.Street;
        const auto append = [&](const Marker& marker, QString& field, QStringView separator) {
            if (text.Contains(marker))
                field = text.TakeBetween(marker, spanEnd).toString();
            if (!field.isEmpty())
                lead.FullAddress += separator + field;
        };
        append(locality, lead.City, u", ");
        append(region, lead.State, u", ");
        append(postalCode, lead.PostalCode, u" ");
    }
    if (TrimmedView(lead.FullAddress).startsWith(u','))
        lead.FullAddress.remove(0, 2);
    ReplaceAll(lead.Phone, u"Home", u"");
    if (ContainsExact(page, mailto.Text()))
        lead.Email = StripTags(CleanMarkup(text.TakeBetween(mailto, quote)));
}

} // namespace Brindle
