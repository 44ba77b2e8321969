#pragma once

#include "recipes/LearnPage.h"

#include <optional>

namespace Brindle {

/// A selector of the same records without those that are read as businesses and are none: the head of a table, what
/// stands between the entries, a bar of page numbers. Nothing where there are none, or no selector parts them.
std::optional<QString> SelectorWithoutStrangers(LearnPage& in, const RecordSet& set, const Recipe& recipe);

} // namespace Brindle
