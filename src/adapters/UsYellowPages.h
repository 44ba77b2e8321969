#pragma once

#include "core/Harvest.h"
#include "core/Lead.h"
#include "core/SiteAdapter.h"

#include <QString>

namespace Brindle {

/// The US directory: all that is known of it.
const SiteAdapter& UsYellowPages();

/// Reads a result page of the US directory in the layout that the harvest recognised. In both layouts the page gives
/// link and name of each listing, and the details page, one of the white pages, the rest.
void GetYPUSDataResults(Harvest& harvest, const QString& page);

/// Layout 1: links may lead over the directory's click server.
void GetYPUSDataResults1(Harvest& harvest, const QString& page);
/// Layout 2: without a category. Throws `IndexError` with a malformed details page, see `GetUSDetails2`.
void GetYPUSDataResults2(Harvest& harvest, const QString& page);

/// Fetches and reads the details page of `lead.DetailsLink` for layout 1. The name is replaced where the page carries
/// one; when the page cannot be fetched the other fields stay empty.
void GetUSDetails1(Harvest& harvest, Lead& lead);
/// The same for layout 2; the website is never filled. Throws `IndexError` when the location has no comma.
void GetUSDetails2(Harvest& harvest, Lead& lead);

} // namespace Brindle
