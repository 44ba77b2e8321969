#pragma once

#include "discovery/StructuredItems.h"
#include "discovery/StructuredText.h"

namespace Brindle {

/// Adds the typed items of the page's RDFa Lite 1.1 (vocab, typeof, property, resource, prefix, with href, src and
/// content as values), names in full. `base` resolves addresses.
void AddRdfa(const PageTree& page, const QString& base, StructuredText& text, StructuredItems& items);

} // namespace Brindle
