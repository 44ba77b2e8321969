#pragma once

#include "discovery/StructuredItems.h"
#include "discovery/StructuredText.h"

namespace Brindle {

/// Adds the items of the page's microdata (HTML, section 5.2), `itemref` included. `base` resolves addresses.
void AddMicrodata(const PageTree& page, const QString& base, StructuredText& text, StructuredItems& items);

} // namespace Brindle
