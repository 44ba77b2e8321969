#pragma once

#include "core/SiteAdapter.h"

#include <span>

namespace Brindle {

/// The directories that come with the program, in the order of the selector.
std::span<const SiteAdapter> SiteAdapters();

} // namespace Brindle
