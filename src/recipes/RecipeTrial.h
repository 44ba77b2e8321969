#pragma once

#include "page/Selector.h"
#include "recipes/ExamplePlaces.h"
#include "recipes/Recipe.h"
#include "recipes/RecordSpans.h"

#include <QHash>

#include <memory>
#include <vector>

namespace Brindle {

/// Tries selectors and rows on a page; every selector is applied to the page once.
class RecipeTrial {
public:
    explicit RecipeTrial(const ValueSource& source) : source_(source) {}

    /// The records of a selector's elements.
    const std::vector<RecordSpan>& Records(const QString& selector, bool flat);
    /// How many elements a selector selects within a record.
    int CountOf(const QString& selector, RecordSpan record);
    /// What a row reads within a record; empty for nothing.
    QString Read(const RecipeField& row, RecordSpan record);

    /// How well a row holds for records.
    struct Fill {
        int Filled = 0;
        double Share = 0;      ///< of the records in which the value is one of its kind
        double Difference = 0; ///< share of the values that are no repetition
        QString Sample;
    };
    Fill FillOf(const RecipeField& row, const std::vector<RecordSpan>& records);

private:
    const SelectorQuery& QueryOf(const QString& selector);

    ValueSource source_;
    QHash<QString, std::shared_ptr<SelectorQuery>> queries_;
    QHash<std::pair<QString, bool>, std::vector<RecordSpan>> records_;
};

} // namespace Brindle
