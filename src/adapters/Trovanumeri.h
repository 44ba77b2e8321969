#pragma once

#include "core/Harvest.h"

namespace Brindle {

/// Reads a result page of Trovanumeri, whose listings are laid out as table cells. No page is fetched.
void GetYPTrovanumeriDataResults(Harvest& harvest, const QString& page);

} // namespace Brindle
