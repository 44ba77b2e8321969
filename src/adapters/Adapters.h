#pragma once

#include "core/SiteAdapter.h"

#include <span>

namespace Brindle {

/// The adapters of all directories, one row per site code.
std::span<const SiteAdapter> SiteAdapters();

} // namespace Brindle
