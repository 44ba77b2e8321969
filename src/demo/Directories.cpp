#include "demo/Directories.h"

namespace Brindle::Demo {

std::vector<std::unique_ptr<DemoDirectory>> AllDirectories() {
    std::vector<std::unique_ptr<DemoDirectory>> directories;
    directories.push_back(MakeUsYellowPagesDemo());
    directories.push_back(MakeYellowPagesCanadaDemo());
    directories.push_back(MakeCanada411Demo());
    directories.push_back(MakePagineBiancheDemo());
    directories.push_back(MakePagineMailDemo());
    directories.push_back(MakeInfobelItalyDemo());
    directories.push_back(MakeVirgilioDemo());
    directories.push_back(MakeTrovanumeriDemo());
    return directories;
}

} // namespace Brindle::Demo
