#pragma once

#include "demo/DemoDirectory.h"

#include <memory>
#include <vector>

namespace Brindle::Demo {

// Each directory is one source file, which defines its function; a new one has its line here, in Directories.cpp and in
// CMakeLists.txt.
std::unique_ptr<DemoDirectory> MakeUsYellowPagesDemo();
std::unique_ptr<DemoDirectory> MakeYellowPagesCanadaDemo();
std::unique_ptr<DemoDirectory> MakeCanada411Demo();
std::unique_ptr<DemoDirectory> MakePagineBiancheDemo();
std::unique_ptr<DemoDirectory> MakePagineMailDemo();
std::unique_ptr<DemoDirectory> MakeInfobelItalyDemo();
std::unique_ptr<DemoDirectory> MakeVirgilioDemo();
std::unique_ptr<DemoDirectory> MakeTrovanumeriDemo();

/// In the place of Trovanumeri's: as many businesses as are wanted.
std::unique_ptr<DemoDirectory> MakeManyLeadsDemo(int leads);

/// The directories that there are.
std::vector<std::unique_ptr<DemoDirectory>> AllDirectories();

} // namespace Brindle::Demo
