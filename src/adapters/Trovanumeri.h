#pragma once

#include "core/Harvest.h"
#include "core/SiteAdapter.h"

namespace Brindle {

/// Trovanumeri: all that is known of it.
const SiteAdapter& Trovanumeri();

/// Reads a result page of Trovanumeri, whose listings are laid out as table cells. No page is fetched.
void GetYPTrovanumeriDataResults(Harvest& harvest, const QString& page);

} // namespace Brindle
