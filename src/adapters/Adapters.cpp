#include "adapters/Adapters.h"

#include "adapters/Canada411.h"
#include "adapters/InfobelItaly.h"
#include "adapters/PagineBianche.h"
#include "adapters/PagineMail.h"
#include "adapters/Trovanumeri.h"
#include "adapters/UsYellowPages.h"
#include "adapters/Virgilio.h"
#include "adapters/YellowPagesCanada.h"

#include <vector>

namespace Brindle {

std::span<const SiteAdapter> SiteAdapters() {
    static const std::vector<SiteAdapter> directories{
        UsYellowPages(), YellowPagesCanada(), Canada411(), PagineBianche(),
        PagineMail(),    InfobelItaly(),      Virgilio(),  Trovanumeri(),
    };
    return directories;
}

} // namespace Brindle
