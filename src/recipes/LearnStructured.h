#pragma once

#include "recipes/LearnRecipe.h"

#include <optional>

namespace Brindle {

/// The start page of an address's site, for the recipe's `home`.
QString HomeOf(const QString& url);

/// A recipe for what the page says of itself, when the examples are in that; none otherwise.
std::optional<LearnedRecipe> LearnStructured(const PageTree& page, const QString& url,
                                             const std::vector<RecipeExample>& examples);

} // namespace Brindle
