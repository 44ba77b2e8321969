#include "Adapters.h"

#include "Canada411.h"
#include "UsYellowPages.h"
#include "YellowPagesCanada.h"

#include <array>

namespace Brindle {

std::span<const SiteAdapter> SiteAdapters() {
    static const std::array adapters{
        SiteAdapter{SiteCode::UsYellowPages, GetYPUSDataResults},
        SiteAdapter{SiteCode::YellowPagesCanada, GetYPCADataResults},
        SiteAdapter{SiteCode::Canada411, Get411CADataResults},
    };
    return adapters;
}

} // namespace Brindle
