#pragma once

#include "discovery/StructuredItems.h"
#include "discovery/StructuredText.h"

namespace Brindle {

/// Adds the page's cards, addresses and places of microformats 2 (h-card, h-adr, h-geo) and of their classic forms
/// (vcard, adr, geo), which go by the names of the newer ones. Other formats become items only as what holds these.
/// `base` resolves addresses.
void AddMicroformats(const PageTree& page, const QString& base, StructuredText& text, StructuredItems& items);

} // namespace Brindle
