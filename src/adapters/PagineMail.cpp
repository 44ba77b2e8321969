#include "adapters/PagineMail.h"

#include "adapters/FieldTable.h"
#include "adapters/ItalianSites.h"
#include "adapters/PageTurning.h"
#include "toolkit/Ascii.h"
#include "toolkit/Markup.h"
#include "toolkit/Text.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// Longer ones are the directory's own tracking links.
constexpr qsizetype longestWebsite = 60;

constexpr Marker listing(u"<h2>");

bool IsPostalCode(QStringView word) {
    return word.size() == 5 && std::all_of(word.begin(), word.end(), [](QChar c) { return Ascii::IsDigit(c); });
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
    Skip(text, listing, u"href=\"");
    if (text.Contains(u"href=\"")) {
        lead.DetailsLink = CleanMarkup(text.TakeBetween(u"href=\"", u"\""));
        Skip(text, u"\"", u">");
        if (!ContainsExact(lead.DetailsLink, u"http"))
            lead.DetailsLink.prepend(harvest.Site().DetailsBase);
    }
    lead.Name = CleanMarkup(text.TakeBetween(u">", u"</a>"));
}

void ReadBlock(WorkingText& text, Lead& lead) {
    const bool another = text.Contains(u"itemBoxWrap");
    const QStringView block =
        another ? text.TakeBetween(u"</h2>", u"itemBoxWrap") : text.TakeBetween(u"</h2>", u"</TABLE>");
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

const SiteAdapter& PagineMail() {
    static const SiteAdapter site{.Code = u"KVPE001002"_s,
                                  .Layouts = {{.InitList = u"search-title"_s,
                                               .EndList = u"<footer>"_s,
                                               .NextPageText = u"</big></a>"_s,
                                               .Read = GetYPPagEmailDataResults}},
                                  .TurnPage = GetPagEmailNextURL};
    return site;
}

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
    lead.Category = StripAndClean(text.TakeBetween(u"<h3>", u"</h3>"));
    lead.FullAddress = StripAndClean(text.TakeBetween(u"<ADDRESS>", u"<BR>"));
    for (int pass = 0; pass < 5; ++pass)
        ReplaceAll(lead.FullAddress, u"  ", u" ");
    SplitAddress(lead);
    if (text.Contains(u"Tel:"))
        lead.Phone =
            CleanMarkup(text.Contains(u"Fax:") ? text.TakeBetween(u"Tel:", u"Fax") : text.TakeBetween(u"Tel:", u"<"));
    if (text.Contains(u"Fax:"))
        lead.Fax = CleanMarkup(text.TakeBetween(u"Fax:", u"<"));
    if (text.Contains(u"href=\"")) {
        lead.Website = text.TakeBetween(u"href=\"", u"\"").toString();
        if (!ContainsExact(lead.Website, u"http://"))
            lead.Website.prepend(u"http://");
    }
    text.MoveTo(0);
    if (text.Contains(u"mailto:"))
        lead.Email = CleanAndStrip(text.TakeBetween(u"mailto:", u"\""));
    text.MoveTo(0);
    if (text.Contains(u"<H3>"))
        lead.Category = StripTags(text.TakeBetween(u"<H3>", u"</H3>"));
}

TurnedPage GetPagEmailNextURL(PageTurn& turn, const QString& page) {
    const QString target = NextPageNumber(page);
    const bool goesOn = target != u"1";
    if (goesOn)
        turn.Job.Status.SetPanel(0, turn.Job.Texts.Text(Message::Request));
    const bool clicked = ClickFirstLink(turn, [&](const QString& text) { return Trim(text) == target; });
    return {.Clicked = clicked, .GoesOn = goesOn};
}

} // namespace Brindle
