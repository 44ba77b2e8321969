#pragma once

#include "demo/modern/ModernDirectory.h"

namespace Brindle::Demo {

// Each look is one source file, which defines its function; a new one has its line here, in ModernDirectories.cpp and
// in CMakeLists.txt.
std::unique_ptr<ModernDirectory> MakeJsonLdLook();
std::unique_ptr<ModernDirectory> MakeMicrodataLook();
std::unique_ptr<ModernDirectory> MakeHCardLook();
std::unique_ptr<ModernDirectory> MakeHashedLook();
std::unique_ptr<ModernDirectory> MakeTableLook();
std::unique_ptr<ModernDirectory> MakeDefinitionsLook();
std::unique_ptr<ModernDirectory> MakeMixedLook();
std::unique_ptr<ModernDirectory> MakeSecureLook();
std::unique_ptr<ModernDirectory> MakeLoadMoreLook();
std::unique_ptr<ModernDirectory> MakeScrollingLook();

} // namespace Brindle::Demo
