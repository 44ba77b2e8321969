#pragma once

#include "discovery/AnyPage.h"
#include "page/PageTree.h"
#include "recipes/Recipe.h"

#include <QString>

#include <vector>

namespace Brindle {

/// What somebody says of a business on a page: by its text as it stands there, or by the element that shows it.
struct RecipeExample {
    Field Column = Field::BusinessName;
    QString Text{};          ///< not used with `Node`
    NodeIndex Node = noNode; ///< an element that somebody pointed at
    int Business = 0;        ///< examples of one business have the same number, from 0
};

/// A row that could be added to a recipe.
struct RecipeProposal {
    RecipeField Row;
    int Filled = 0; ///< in how many of the recipe's records
    QString Sample; ///< the first value
};

struct LearnedRecipe {
    Recipe What;
    std::vector<RecipeProposal> Proposals; ///< for the columns that the recipe has not, in their order
    int Beside = 0; ///< businesses that the page seems to list too, which the recipe does not read
};

/// Makes a recipe that reads all records of a page from the examples of one or more of them: finds where they stand,
/// the list around them, and selectors that hold for all of its records; then reads the page by it, sees that the
/// examples come out, and notes the counts. The name and home are those of the page's host. Throws `Failure` with one
/// line when an example is not found, or nothing holds for more than one record.
LearnedRecipe LearnRecipe(const PageTree& page, const QString& url, const std::vector<RecipeExample>& examples);
/// The same, for several recipes of one page. `any`: what it is read as without examples, with selectors.
LearnedRecipe LearnRecipe(const PageTree& page, const QString& url, const std::vector<RecipeExample>& examples,
                          const AnyPageReading& any);

} // namespace Brindle
