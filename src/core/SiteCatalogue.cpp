#include "core/SiteCatalogue.h"

#include "toolkit/Text.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

MarkerSet Assigned(const SiteLayout& layout) {
    return {layout.InitList, layout.EndList, u"href=\""_s, u"\""_s, layout.NextPageText, layout.NextPageDisabled};
}

bool IsToldByMarkers(const SiteLayout& layout) {
    return !layout.InitList.isEmpty();
}

} // namespace

QString SiteEntry::DisplayEntry() const {
    return Base.isEmpty() ? Label : Base + u" (" + Label + u')';
}

void SiteAdapter::Read(Harvest& harvest, int layoutVariant, const QString& page) const {
    const auto count = static_cast<int>(Layouts.size());
    const int number = count == 1 ? 1 : layoutVariant;
    if (number >= 1 && number <= count)
        Layouts[static_cast<size_t>(number - 1)].Read(harvest, page);
}

QString GetCountryURL(const QString& displayEntry) {
    const qsizetype open = displayEntry.indexOf(u'(');
    return open < 0 ? displayEntry : Trim(QStringView(displayEntry).first(open));
}

void GetInitTokens(const QString& page, const SiteAdapter& site, MarkerSet& markers, int& layoutVariant) {
    int number = 0;
    for (const SiteLayout& layout : site.Layouts) {
        ++number;
        if (!IsToldByMarkers(layout))
            continue;
        markers = Assigned(layout);
        if (ContainsFolded(page, layout.InitList) && ContainsFolded(page, layout.EndList)) {
            layoutVariant = number;
            return;
        }
    }
}

std::optional<MarkerSet> MarkersOfVariant(const SiteAdapter& site, int layoutVariant) {
    if (layoutVariant < 1 || layoutVariant > static_cast<int>(site.Layouts.size()))
        return std::nullopt;
    const SiteLayout& layout = site.Layouts[static_cast<size_t>(layoutVariant - 1)];
    return IsToldByMarkers(layout) ? std::optional(Assigned(layout)) : std::nullopt;
}

QString MissingListMarkers(const QString& page, const SiteAdapter& site) {
    const auto told = std::count_if(site.Layouts.begin(), site.Layouts.end(), IsToldByMarkers);
    QStringList layouts;
    int number = 0;
    for (const SiteLayout& layout : site.Layouts) {
        ++number;
        if (!IsToldByMarkers(layout))
            continue;
        QStringList missing;
        for (const QString& marker : {layout.InitList, layout.EndList})
            if (!ContainsFolded(page, marker))
                missing.append(u"\u201C%1\u201D"_s.arg(marker));
        if (missing.isEmpty())
            return {};
        const QString list = missing.join(u" and "_s);
        layouts.append(told == 1 ? list : u"layout %1: %2"_s.arg(number).arg(list));
    }
    return u"missing list marker "_s + layouts.join(u"; "_s);
}

void SiteCatalogue::Add(SiteEntry entry, SiteAdapter site) {
    site.Links = entry.Links.value_or(site.Links);
    if (!entry.Search.isEmpty())
        site.SearchAddress = entry.Search;
    const QString code = entry.Code;
    const QString shown = entry.DisplayEntry();
    auto added = std::make_shared<const Site>(Site{std::move(entry), std::move(site)});
    if (const qsizetype index = websiteKeys_.indexOf(code); index >= 0) {
        websiteUrls_[index] = shown;
        sites_[static_cast<size_t>(index)] = std::move(added);
        return;
    }
    websiteKeys_.append(code);
    websiteUrls_.append(shown);
    sites_.push_back(std::move(added));
}

QString SiteCatalogue::GetCountryID(const QString& displayEntry) const {
    const qsizetype index = websiteUrls_.indexOf(displayEntry);
    return index < 0 ? QString() : websiteKeys_[index];
}

const SiteEntry* SiteCatalogue::Find(QStringView siteCode) const {
    const qsizetype index = websiteKeys_.indexOf(siteCode);
    return index < 0 ? nullptr : &sites_[static_cast<size_t>(index)]->Entry;
}

std::shared_ptr<const SiteAdapter> SiteCatalogue::Adapter(QStringView siteCode) const {
    const qsizetype index = websiteKeys_.indexOf(siteCode);
    if (index < 0)
        return nullptr;
    const std::shared_ptr<const Site>& site = sites_[static_cast<size_t>(index)];
    return {site, &site->Adapter};
}

} // namespace Brindle
