#include "Directories.h"

namespace Brindle::Demo {

std::vector<std::unique_ptr<DemoDirectory>> AllDirectories() {
    std::vector<std::unique_ptr<DemoDirectory>> directories;
    directories.push_back(MakeYellowPagesCanadaDemo());
    return directories;
}

} // namespace Brindle::Demo
