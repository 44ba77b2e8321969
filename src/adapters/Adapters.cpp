#include "Adapters.h"

#include "Canada411.h"
#include "InfobelItaly.h"
#include "PagineBianche.h"
#include "PagineMail.h"
#include "Trovanumeri.h"
#include "UsYellowPages.h"
#include "Virgilio.h"
#include "YellowPagesCanada.h"

#include <array>

namespace Brindle {

std::span<const SiteAdapter> SiteAdapters() {
    static const std::array adapters{
        SiteAdapter{SiteCode::UsYellowPages, GetYPUSDataResults},
        SiteAdapter{SiteCode::YellowPagesCanada, GetYPCADataResults},
        SiteAdapter{SiteCode::Canada411, Get411CADataResults},
        SiteAdapter{SiteCode::PagineBianche, GetYPPagBianchDataResults},
        SiteAdapter{SiteCode::PagineMail, GetYPPagEmailDataResults, GetPagEmailNextURL},
        SiteAdapter{SiteCode::InfobelItaly, GetYPInfobelDataResults},
        SiteAdapter{SiteCode::Virgilio, GetYPVirgilioDataResults,
                    [](PageTurn& turn, const QString&) { return GetVirgilioNextURL(turn); }},
        SiteAdapter{SiteCode::Trovanumeri, GetYPTrovanumeriDataResults},
    };
    return adapters;
}

} // namespace Brindle
