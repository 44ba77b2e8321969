#include "Adapters.h"

#include "YellowPagesCanada.h"

#include <array>

namespace Brindle {

std::span<const SiteAdapter> SiteAdapters() {
    static const std::array adapters{
        SiteAdapter{SiteCode::YellowPagesCanada, GetYPCADataResults},
    };
    return adapters;
}

} // namespace Brindle
