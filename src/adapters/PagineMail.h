#pragma once

#include "core/Lead.h"
#include "core/SiteAdapter.h"

namespace Brindle {

/// Pagine-mail: all that is known of it.
const SiteAdapter& PagineMail();

/// Reads a result page of Pagine-mail. Every field stands in the listing's own block.
void GetYPPagEmailDataResults(Harvest& harvest, const QString& page);

/// Reads the fields of one listing, category included, from its block of the result page; an empty block changes
/// nothing. The name stays.
void GetPagEmailDetails(QStringView block, Lead& lead);

/// Turns to the next result page by a click on the link that carries its number. On the way back to page 1 the link is
/// clicked, but the harvest ends. Without a link of that number the page stays, and the harvest goes on.
TurnedPage GetPagEmailNextURL(PageTurn& turn, const QString& page);

} // namespace Brindle
