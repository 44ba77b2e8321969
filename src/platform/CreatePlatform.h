#pragma once

#include "core/Platform.h"

#include <memory>

namespace Brindle {

/// The platform that the program runs on.
std::unique_ptr<Platform> CreatePlatform();

} // namespace Brindle
