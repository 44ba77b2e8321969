#pragma once

#include "page/Selector.h"
#include "recipes/ExamplePlaces.h"
#include "recipes/Recipe.h"

#include <QHash>

#include <memory>
#include <vector>

namespace Brindle {

/// Tries selectors and rows on a page; every selector is applied to the page once.
class RecipeTrial {
public:
    explicit RecipeTrial(const ValueSource& source) : source_(source) {}

    /// The elements that a selector selects, without those that lie in another one.
    const std::vector<NodeIndex>& Records(const QString& selector);
    /// How many elements a selector selects within a record.
    int CountOf(const QString& selector, NodeIndex record);
    /// What a row reads within a record; empty for nothing.
    QString Read(const RecipeField& row, NodeIndex record);

    /// How well a row holds for records.
    struct Fill {
        int Filled = 0;
        double Share = 0;      ///< of the records in which the value is one of its kind
        double Difference = 0; ///< share of the values that are no repetition
        QString Sample;
    };
    Fill FillOf(const RecipeField& row, const std::vector<NodeIndex>& records);

private:
    const SelectorQuery& QueryOf(const QString& selector);

    ValueSource source_;
    QHash<QString, std::shared_ptr<SelectorQuery>> queries_;
    QHash<QString, std::vector<NodeIndex>> records_;
};

} // namespace Brindle
