#pragma once

#include "adapters/Adapters.h"

#include <QStringList>
#include <QStringView>

namespace Brindle {

/// The codes of the directories that come with the program.
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

/// The same in the order of the selector.
inline QStringList KnownSiteCodes() {
    QStringList codes;
    for (const SiteAdapter& site : SiteAdapters())
        codes.append(site.Code);
    return codes;
}

/// The directory of a code; one without layouts for an unknown code.
inline const SiteAdapter& SiteOfCode(QStringView code) {
    static const SiteAdapter unknown;
    for (const SiteAdapter& site : SiteAdapters())
        if (site.Code == code)
            return site;
    return unknown;
}

} // namespace Brindle
