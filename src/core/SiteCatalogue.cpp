#include "core/SiteCatalogue.h"

#include "toolkit/Text.h"

#include <algorithm>
#include <array>
#include <span>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

struct ListMarkers {
    QStringView Code;
    int Variant;
    QStringView InitList;
    QStringView EndList;
    QStringView NextPageText;
    QStringView NextPageDisabled;
};

// In the order in which they are tried. A site's second set may repeat what it keeps from the first.
constexpr std::array<ListMarkers, 11> markerTable{{
    {SiteCode::UsYellowPages, 1, u"business-serp", u"footer-wrapper", u"Next<", u""},
    {SiteCode::UsYellowPages, 2, u"row-fluid", u"footer-wrapper", u"Next</", u""},
    {SiteCode::YellowPagesCanada, 1, u"<DIV class=\"ypgResultsTop", u"<DIV class=ypgFooterLegal", u"Next</", u""},
    {SiteCode::YellowPagesCanada, 2, u"main", u"footer", u"Next</", u""},
    {SiteCode::Canada411, 1, u"total_result_found", u"global-footer", u"button_next>", u""},
    {SiteCode::PagineBianche, 1, u"listing-top", u"footer", u"Successivo", u""},
    {SiteCode::PagineMail, 1, u"search-title", u"<footer>", u"</big></a>", u""},
    {SiteCode::InfobelItaly, 1, u"<H1 class=Pageh1>", u"id=footer", u"successivo</A>", u"ec disabled>successivo"},
    {SiteCode::InfobelItaly, 2, u"span-4 people", u"id=footer", u"successivo</A>", u"ec disabled>successivo"},
    {SiteCode::Virgilio, 1, u"conteggi", u"vf_footer", u"Avanti \u203A</a>", u""},
    {SiteCode::Trovanumeri, 1, u"<P>Risultati", u"Copyright", u"Avanti &gt;&gt;</", u""},
}};

std::span<const ListMarkers> SetsOf(QStringView siteCode) {
    const auto belongs = [siteCode](const ListMarkers& row) { return row.Code == siteCode; };
    const auto first = std::find_if(markerTable.begin(), markerTable.end(), belongs);
    const auto last = std::find_if_not(first, markerTable.end(), belongs);
    return {first, last};
}

MarkerSet Assigned(const ListMarkers& row) {
    return {row.InitList.toString(),     row.EndList.toString(),         u"href=\""_s, u"\""_s,
            row.NextPageText.toString(), row.NextPageDisabled.toString()};
}

} // namespace

const QStringList& KnownSiteCodes() {
    static const QStringList codes = [] {
        QStringList list;
        for (const QStringView code :
             {SiteCode::UsYellowPages, SiteCode::YellowPagesCanada, SiteCode::Canada411, SiteCode::PagineBianche,
              SiteCode::PagineMail, SiteCode::InfobelItaly, SiteCode::Virgilio, SiteCode::Trovanumeri})
            list.append(code.toString());
        return list;
    }();
    return codes;
}

MarkupForm MarkupFormOf(QStringView siteCode) {
    const bool legacy = siteCode == SiteCode::YellowPagesCanada || siteCode == SiteCode::Canada411 ||
                        siteCode == SiteCode::InfobelItaly;
    return legacy ? MarkupForm::Legacy : MarkupForm::Standard;
}

QString GetCountryURL(const QString& displayEntry) {
    const qsizetype open = displayEntry.indexOf(u'(');
    return open < 0 ? displayEntry : Trim(QStringView(displayEntry).first(open));
}

void GetInitTokens(const QString& page, QStringView siteCode, MarkerSet& markers, int& layoutVariant) {
    for (const ListMarkers& row : SetsOf(siteCode)) {
        markers = Assigned(row);
        if (ContainsFolded(page, row.InitList) && ContainsFolded(page, row.EndList)) {
            layoutVariant = row.Variant;
            return;
        }
    }
}

std::optional<MarkerSet> MarkersOfVariant(QStringView siteCode, int layoutVariant) {
    for (const ListMarkers& row : SetsOf(siteCode))
        if (row.Variant == layoutVariant)
            return Assigned(row);
    return std::nullopt;
}

QString MissingListMarkers(const QString& page, QStringView siteCode) {
    const auto sets = SetsOf(siteCode);
    QStringList layouts;
    for (const ListMarkers& row : sets) {
        QStringList missing;
        for (const QStringView marker : {row.InitList, row.EndList})
            if (!ContainsFolded(page, marker))
                missing.append(u"\u201C%1\u201D"_s.arg(marker));
        if (missing.isEmpty())
            return {};
        const QString list = missing.join(u" and "_s);
        layouts.append(sets.size() == 1 ? list : u"layout %1: %2"_s.arg(row.Variant).arg(list));
    }
    return u"missing list marker "_s + layouts.join(u"; "_s);
}

SiteCatalogue::SiteCatalogue(std::vector<SiteEntry> entries, QString mapBase)
    : entries_(std::move(entries)), mapBase_(std::move(mapBase)) {
    for (const SiteEntry& entry : entries_) {
        websiteKeys_.append(entry.Code);
        websiteUrls_.append(entry.DisplayEntry());
    }
}

QString SiteCatalogue::GetCountryID(const QString& displayEntry) const {
    const qsizetype index = websiteUrls_.indexOf(displayEntry);
    return index < 0 ? QString() : websiteKeys_[index];
}

const SiteEntry* SiteCatalogue::Find(QStringView siteCode) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [siteCode](const SiteEntry& entry) { return entry.Code == siteCode; });
    return found == entries_.end() ? nullptr : &*found;
}

} // namespace Brindle
