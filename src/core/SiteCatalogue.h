#pragma once

#include "core/MarkupForm.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace Brindle {

/// The site codes of the catalogue.
namespace SiteCode {
inline constexpr QStringView UsYellowPages = u"KVPN001001";
inline constexpr QStringView YellowPagesCanada = u"KVPN002001";
inline constexpr QStringView Canada411 = u"KVPN002002";
inline constexpr QStringView PagineBianche = u"KVPE001001";
inline constexpr QStringView PagineMail = u"KVPE001002";
inline constexpr QStringView InfobelItaly = u"KVPE001003";
inline constexpr QStringView Virgilio = u"KVPE001004";
inline constexpr QStringView Trovanumeri = u"KVPE001005";
} // namespace SiteCode

/// What the deployment file says of one directory.
struct SiteEntry {
    QString Code;
    QString Base;         ///< address of the home page, without a trailing slash
    QString Label;        ///< shown in parentheses behind the base address
    QString DetailsBase;  ///< what relative links are made absolute with; the base address unless configured
    QString OwnHost;      ///< empty: never matches
    QString RedirectHost; ///< host of the click-redirect server; empty: never matches
    QString ContactEmail; ///< the directory's own contact address
    QString AdvertUrl;    ///< the directory's free-listing advertisement page

    QString DisplayEntry() const { return Base + QStringLiteral(" (") + Label + QStringLiteral(")"); }
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

/// The site codes that the program knows, in the order of the selector.
const QStringList& KnownSiteCodes();

/// The form in which a site's markers are written; `Standard` for an unknown code.
MarkupForm MarkupFormOf(QStringView siteCode);

/// The base address of a display entry: what stands before the first "(", trimmed; without a "(" the entry as it is.
QString GetCountryURL(const QString& displayEntry);

/// Fills the markers of a site and, when one of its sets matches the page, the layout variant. The sets are tried in
/// order; the markers of the last one tried stay assigned when none matches, and the variant is then left alone.
/// Letter case of the page does not matter.
void GetInitTokens(const QString& page, QStringView siteCode, MarkerSet& markers, int& layoutVariant);

/// The markers of one layout variant, 1-based, as `GetInitTokens` would assign them; nothing when there is none.
std::optional<MarkerSet> MarkersOfVariant(QStringView siteCode, int layoutVariant);

/// Which list markers the page lacks, layout by layout, as one line for the user; empty when a layout is complete.
QString MissingListMarkers(const QString& page, QStringView siteCode);

/// The directories that are offered, as two parallel lists.
class SiteCatalogue {
public:
    SiteCatalogue() = default;
    explicit SiteCatalogue(std::vector<SiteEntry> entries, QString mapBase);

    const QStringList& WebsiteKeys() const { return websiteKeys_; }
    const QStringList& WebsiteURLS() const { return websiteUrls_; }

    /// The code of a display entry; empty when the entry is not in the list.
    QString GetCountryID(const QString& displayEntry) const;
    /// The entry of a code; null when the code is not in the list.
    const SiteEntry* Find(QStringView siteCode) const;
    /// Base address of the map service.
    const QString& MapBase() const { return mapBase_; }

private:
    std::vector<SiteEntry> entries_;
    QStringList websiteKeys_;
    QStringList websiteUrls_;
    QString mapBase_;
};

} // namespace Brindle
