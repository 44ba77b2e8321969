#include "adapters/Adapters.h"

#include <vector>

namespace Brindle {

#define DIRECTORY(Name) const SiteAdapter& Name();
#include "adapters/Directories.inc"
#undef DIRECTORY

std::span<const SiteAdapter> SiteAdapters() {
    static const std::vector<SiteAdapter> directories{
#define DIRECTORY(Name) Name(),
#include "adapters/Directories.inc"
#undef DIRECTORY
    };
    return directories;
}

} // namespace Brindle
