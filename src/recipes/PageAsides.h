#pragma once

#include "page/PageTree.h"

#include <vector>

namespace Brindle {

/// For each node of a page, whether it stands beside what the page is about: in a side column, navigation or a footer,
/// which hold lists of their own, often of the same make.
std::vector<char> NodesAside(const PageTree& page);

} // namespace Brindle
