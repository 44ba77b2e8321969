#pragma once

#include "discovery/JsonText.h"
#include "discovery/StructuredItems.h"

namespace Brindle {

/// Adds what the page's scripts of JSON-LD say: their objects as items, `@graph`, lists and `@value` opened, a mere
/// `@id` as the item that has it. Names stand as they are written; no context is fetched.
void AddJsonLd(const PageTree& page, StructuredItems& items, const JsonBounds& bounds = {});

} // namespace Brindle
