#pragma once

#include "core/SiteAdapter.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace Brindle {

/// What a deployment says of one directory.
struct SiteEntry {
    QString Code = {};
    QString Base = {};         ///< address of the home page, without a trailing slash; empty: it has none
    QString Label = {};        ///< shown in parentheses behind the base address
    QString DetailsBase = {};  ///< what relative links are made absolute with; the base address unless configured
    QString OwnHost = {};      ///< empty: never matches
    QString RedirectHost = {}; ///< host of the click-redirect server; empty: never matches
    QString ContactEmail = {}; ///< the directory's own contact address
    QString AdvertUrl = {};    ///< the directory's free-listing advertisement page
    QString Search = {}; ///< address of a search, with {what} and {where} in it; empty: as the directory's object says
    std::optional<Way> Links = {}; ///< instead of what the directory's object says

    /// Base address, blank, label in parentheses; the label alone for a directory without a home page.
    QString DisplayEntry() const;
};

/// The texts that tell where the results list and the next-page link lie in a site's page.
struct MarkerSet {
    QString TknInitList;
    QString TknEndList;
    QString TknInitNextPage;
    QString TknEndNextPage;
    QString TknNextPageText;
    QString TknNextPageDisabled; ///< empty: the site has none
};

/// The base address of a display entry: what stands before the first "(", trimmed; without a "(" the entry as it is.
QString GetCountryURL(const QString& displayEntry);

/// Fills the markers of a site and, when one of its layouts matches the page, the layout variant. The layouts are tried
/// in order; the markers of the last one tried stay assigned when none matches, and the variant is then left alone.
/// Letter case of the page does not matter.
void GetInitTokens(const QString& page, const SiteAdapter& site, MarkerSet& markers, int& layoutVariant);

/// The markers of one layout variant, 1-based, as `GetInitTokens` would assign them; nothing when there is none.
std::optional<MarkerSet> MarkersOfVariant(const SiteAdapter& site, int layoutVariant);

/// Which list markers the page lacks, layout by layout, as one line for the user; empty when a layout is complete.
QString MissingListMarkers(const QString& page, const SiteAdapter& site);

/// The directories that are offered, in the order of the selector. Copies share the directories.
class SiteCatalogue {
public:
    SiteCatalogue() = default;
    explicit SiteCatalogue(QString mapBase) : mapBase_(std::move(mapBase)) {}

    /// Adds a directory behind the others, or in the place of the one that has its code; `entry` and `site` have the
    /// same code. What the entry says of links and search comes before what the directory itself says.
    void Add(SiteEntry entry, SiteAdapter site);

    const QStringList& WebsiteKeys() const { return websiteKeys_; }
    const QStringList& WebsiteURLS() const { return websiteUrls_; }

    /// The code of a display entry; empty when the entry is not in the list.
    QString GetCountryID(const QString& displayEntry) const;
    /// The entry of a code; null when the code is not in the list.
    const SiteEntry* Find(QStringView siteCode) const;
    /// The directory of a code; null when the code is not in the list.
    std::shared_ptr<const SiteAdapter> Adapter(QStringView siteCode) const;
    /// Base address of the map service.
    const QString& MapBase() const { return mapBase_; }

private:
    struct Site {
        SiteEntry Entry;
        SiteAdapter Adapter;
    };

    std::vector<std::shared_ptr<const Site>> sites_;
    QStringList websiteKeys_;
    QStringList websiteUrls_;
    QString mapBase_;
};

} // namespace Brindle
