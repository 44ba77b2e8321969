#pragma once

#include "core/Harvest.h"
#include "core/Lead.h"
#include "core/SiteAdapter.h"

namespace Brindle {

/// PagineBianche: all that is known of it.
const SiteAdapter& PagineBianche();

/// Reads a result page of PagineBianche in the layout that the harvest recognised.
void GetYPPagBianchDataResults(Harvest& harvest, const QString& page);

/// Layout 1: the result page gives link and name, the details page the rest.
void GetYPPagBianchDataResults1(Harvest& harvest, const QString& page);
/// Layout 2: every field stands on the result page.
void GetYPPagBianchDataResults2(Harvest& harvest, const QString& page);

/// Fetches and reads the details page of `lead.DetailsLink`, and the contact form that it links to. The name is
/// replaced where the page carries one; when the page cannot be fetched the other fields are empty.
void GetPagBianchDetails(Harvest& harvest, Lead& lead);

} // namespace Brindle
