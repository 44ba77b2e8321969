#pragma once

#include "core/Lead.h"
#include "core/SiteAdapter.h"

namespace Brindle {

/// Virgilio: all that is known of it.
const SiteAdapter& Virgilio();

/// Reads a result page of Virgilio: it gives each listing's link, the details page in the directory the rest.
void GetYPVirgilioDataResults(Harvest& harvest, const QString& page);

/// Fetches and reads the details page of `lead.DetailsLink`. Name and category are replaced where the page carries
/// them; when the page cannot be fetched the other fields are empty.
void GetUVirgilioDetails1(Harvest& harvest, Lead& lead);

/// Turns to the next result page by a click on the link that says so; without one the harvest ends.
TurnedPage GetVirgilioNextURL(PageTurn& turn);

} // namespace Brindle
