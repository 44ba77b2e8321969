#include "adapters/Adapters.h"

#include "adapters/Canada411.h"
#include "adapters/InfobelItaly.h"
#include "adapters/PagineBianche.h"
#include "adapters/PagineMail.h"
#include "adapters/Trovanumeri.h"
#include "adapters/UsYellowPages.h"
#include "adapters/Virgilio.h"
#include "adapters/YellowPagesCanada.h"

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
