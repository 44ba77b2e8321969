#pragma once

#include "core/Harvest.h"
#include "core/Lead.h"
#include "core/SiteAdapter.h"

#include <QString>

namespace Brindle {

/// 411 Canada: all that is known of it.
const SiteAdapter& Canada411();

/// Reads a result page of 411 Canada: the page gives link and name of each listing, the details page the rest.
void Get411CADataResults(Harvest& harvest, const QString& page);

/// Fetches and reads the details page of a business, that of `lead.DetailsLink`. The name is replaced where the page
/// carries one; when the page cannot be fetched the other fields stay empty.
void Get411CADetails1(Harvest& harvest, Lead& lead);
/// The same for a private person.
void Get411CADetails2(Harvest& harvest, Lead& lead);

} // namespace Brindle
