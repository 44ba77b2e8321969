#pragma once

#include "core/Harvest.h"
#include "core/SiteAdapter.h"

namespace Brindle {

/// Infobel Italy: all that is known of it.
const SiteAdapter& InfobelItaly();

/// Reads a result page of Infobel Italy in the layout that the harvest recognised. Every field stands on the page.
void GetYPInfobelDataResults(Harvest& harvest, const QString& page);

/// Layout 1: listings with a details link, a category in the search form.
void GetYPInfobelDataResults1(Harvest& harvest, const QString& page);
/// Layout 2: neither; the phone number stands in for the details link.
void GetYPInfobelDataResults2(Harvest& harvest, const QString& page);

} // namespace Brindle
