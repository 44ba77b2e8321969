#pragma once

#include "core/Harvest.h"
#include "core/Lead.h"
#include "core/SiteAdapter.h"

namespace Brindle {

/// Yellow Pages Canada: all that is known of it.
const SiteAdapter& YellowPagesCanada();

/// Reads a result page of Yellow Pages Canada in the layout that the harvest recognised.
void GetYPCADataResults(Harvest& harvest, const QString& page);

/// Layout 1: every field stands on the result page.
void GetYPCADataResults1(Harvest& harvest, const QString& page);
/// Layout 2, the white pages: the result page gives link and name, the details page the rest.
void GetYPCADataResults2(Harvest& harvest, const QString& page);

/// Fetches and reads the details page of `lead.DetailsLink`. The name is replaced where the page carries one; when the
/// page cannot be fetched the other fields are empty.
void GetCADetails2(Harvest& harvest, Lead& lead);

} // namespace Brindle
