#include "Directories.h"

namespace Brindle::Demo {

std::vector<std::unique_ptr<DemoDirectory>> AllDirectories() {
    std::vector<std::unique_ptr<DemoDirectory>> directories;
    return directories;
}

} // namespace Brindle::Demo
