#pragma once

#include "page/PageTree.h"
#include "recipes/Recipe.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace Brindle {

/// A business's own page as a harvest gets it: without what its scripts would add.
struct OwnPage {
    std::shared_ptr<const PageTree> Page;
    QString Url;
};

/// Makes a row for the pages of businesses from an element that somebody pointed at. `shown` is the page of the first
/// business as a browser shows it; `pages` are those of some businesses as a harvest gets them, the same business
/// first. The row gives on the first of them what the element shows, and of all such rows it is the one that holds best
/// for the others. Nothing where the page of a harvest does not say it.
std::optional<RecipeField> LearnDetailsRow(const PageTree& shown, const QString& url, const std::vector<OwnPage>& pages,
                                           Field column, NodeIndex element);

} // namespace Brindle
