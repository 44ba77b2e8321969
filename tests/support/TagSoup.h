#pragma once

#include <QString>

#include <random>

namespace Brindle::Test {

/// A page of this many tags, pieces of tags and texts in any order; the same ones for the same numbers of `random`.
QString TagSoup(std::mt19937& random, int pieces);

} // namespace Brindle::Test
