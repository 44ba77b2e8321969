#include "adapters/PagineMail.h"

#include "adapters/FieldTable.h"
#include "adapters/ItalianSites.h"
#include "adapters/PageTurning.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

#include <algorithm>

namespace Brindle {

namespace {

// Longer ones are the directory's own tracking links.
constexpr qsizetype longestWebsite = 60;

const Marker tagEnd(u">");
const Marker tagBegin(u"<");
const Marker quote(u"\"");
const Marker href(u"href=\"");
const Marker mailto(u"mailto:");

// A listing.
const Marker listing(u"<h2>");
const Marker linkEnd(u"</a>");
const Marker blockBegin(u"</h2>");
const Marker blockEnd(u"itemBoxWrap");
const Marker lastBlockEnd(u"</TABLE>");

// A listing's block.
const Marker category(u"<h3>");
const Marker categoryEnd(u"</h3>");
const Marker address(u"<ADDRESS>");
const Marker addressEnd(u"<BR>");
const Marker telephone(u"Tel:");
const Marker telephoneEnd(u"Fax");
const Marker fax(u"Fax:");
const Marker upperCategory(u"<H3>");
const Marker upperCategoryEnd(u"</H3>");

bool IsPostalCode(QStringView word) {
    return word.size() == 5 && std::all_of(word.begin(), word.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

// "Via Roma 10 20121 Milano MI": the last word of five digits is the postal code, the street stands before it and the
// city behind it.
void SplitAddress(Lead& lead) {
    const QStringList words = SplitText(lead.FullAddress, u" ");
    const auto last = std::find_if(words.rbegin(), words.rend(), IsPostalCode);
    if (last == words.rend())
        return;
    const qsizetype at = words.rend() - last - 1;
    lead.PostalCode = Trim(words[at]);
    for (qsizetype i = 0; i < words.size(); ++i)
        if (i != at)
            AppendWord(i < at ? lead.Street : lead.City, words[i]);
}

void ReadListing(const Harvest& harvest, WorkingText& text, Lead& lead) {
    StartListing(lead);
    Skip(text, listing, href);
    if (text.Contains(href)) {
        lead.DetailsLink = CleanMarkup(text.TakeBetween(href, quote));
        Skip(text, quote, tagEnd);
        if (!ContainsExact(lead.DetailsLink, u"http"))
            lead.DetailsLink.prepend(harvest.Site().DetailsBase);
    }
    lead.Name = CleanMarkup(text.TakeBetween(tagEnd, linkEnd));
}

void ReadBlock(WorkingText& text, Lead& lead) {
    const QStringView block = text.TakeBetween(blockBegin, text.Contains(blockEnd) ? blockEnd : lastBlockEnd);
    if (!block.isEmpty()) {
        GetPagEmailDetails(block, lead);
        lead.Category = CleanMarkup(lead.Category);
    }
    if (lead.Website.size() > longestWebsite)
        lead.Website.clear();
}

// The number of the page that the pagination bar offers next.
QString NextPageNumber(const QString& page) {
    WorkingText text(page);
    text.ExtractBetween(u"class=\"pagination", u"<strong>");
    return Trim(text.ExtractBetween(u"Vai a pagina", u"\""));
}

} // namespace

void GetYPPagEmailDataResults(Harvest& harvest, const QString& page) {
    WorkingText text(page);
    Lead lead;
    ForEachListing(
        harvest, text, [&] { return text.Contains(listing); },
        [&] {
            ReadListing(harvest, text, lead);
            if (IsListed(harvest, lead.DetailsLink))
                return true;
            ReadBlock(text, lead);
            return KeepLead(harvest, ItalianRules, lead);
        });
}

void GetPagEmailDetails(QStringView block, Lead& lead) {
    if (block.isEmpty())
        return;
    WorkingText text(block);
    lead.Category = StripAndClean(text.TakeBetween(category, categoryEnd));
    lead.FullAddress = StripAndClean(text.TakeBetween(address, addressEnd));
    for (int pass = 0; pass < 5; ++pass)
        ReplaceAll(lead.FullAddress, u"  ", u" ");
    SplitAddress(lead);
    if (text.Contains(telephone))
        lead.Phone = CleanMarkup(text.TakeBetween(telephone, text.Contains(fax) ? telephoneEnd : tagBegin));
    if (text.Contains(fax))
        lead.Fax = CleanMarkup(text.TakeBetween(fax, tagBegin));
    if (text.Contains(href)) {
        lead.Website = text.TakeBetween(href, quote).toString();
        if (!ContainsExact(lead.Website, u"http://"))
            lead.Website.prepend(u"http://");
    }
    text.MoveTo(0);
    if (text.Contains(mailto))
        lead.Email = CleanAndStrip(text.TakeBetween(mailto, quote));
    text.MoveTo(0);
    if (text.Contains(upperCategory))
        lead.Category = StripTags(text.TakeBetween(upperCategory, upperCategoryEnd));
}

TurnedPage GetPagEmailNextURL(PageTurn& turn, const QString& page) {
    const QString target = NextPageNumber(page);
    const bool goesOn = target != u"1";
    if (goesOn)
        turn.Job.Status.SetPanel(StatusPanel::Message, turn.Job.Texts.Text(Message::Request));
    const bool clicked = ClickFirstLink(turn, [&](const QString& text) { return Trim(text) == target; });
    return {.Clicked = clicked, .GoesOn = goesOn};
}

} // namespace Brindle
