#include "demo/modern/Looks.h"

namespace Brindle::Demo {

std::vector<std::unique_ptr<ModernDirectory>> AllModernDirectories(bool secure) {
    std::vector<std::unique_ptr<ModernDirectory>> directories;
    directories.push_back(MakeJsonLdLook());
    directories.push_back(MakeMicrodataLook());
    directories.push_back(MakeHCardLook());
    directories.push_back(MakeHashedLook());
    directories.push_back(MakeTableLook());
    directories.push_back(MakeDefinitionsLook());
    directories.push_back(MakeMixedLook());
    if (secure)
        directories.push_back(MakeSecureLook());
    directories.push_back(MakeLoadMoreLook());
    directories.push_back(MakeScrollingLook());
    return directories;
}

} // namespace Brindle::Demo
