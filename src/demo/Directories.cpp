#include "Directories.h"

namespace Brindle::Demo {

std::vector<std::unique_ptr<DemoDirectory>> AllDirectories() {
    std::vector<std::unique_ptr<DemoDirectory>> directories;
    directories.push_back(MakeUsYellowPagesDemo());
    directories.push_back(MakeYellowPagesCanadaDemo());
    directories.push_back(MakeCanada411Demo());
    return directories;
}

} // namespace Brindle::Demo
