#pragma once

#include "adapters/ListingSteps.h"

namespace Brindle {

/// What the five Italian directories have in common once the fields of a listing are read.
inline constexpr ListingRules ItalianRules{
    .Country = u"Italy", .MapCountry = u"Italy", .CleansCategory = true, .CountsExtracted = true};

} // namespace Brindle
