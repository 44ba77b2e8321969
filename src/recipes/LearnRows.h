#pragma once

#include "recipes/LearnPage.h"

#include <optional>
#include <vector>

namespace Brindle {

struct RatedRow {
    RecipeField Row;
    double Cost = 0;
};

/// Finds the rows of a recipe that give the examples and hold for the other records too.
class RowFinder {
public:
    explicit RowFinder(LearnPage& in) : in_(in) {}

    /// Rows that give an example within a record, the best first.
    std::vector<RatedRow> RowsFor(const FoundExample& example, RecordSpan record, size_t most);
    /// The one that holds best for all records; where businesses are made in different ways, one that reads both.
    std::optional<RecipeField> Row(const FoundExample& example, const RecordSet& set);
    /// One that joins the elements in which the parts of an address stand, with nothing that holds them alone.
    std::optional<RecipeField> RowOfParts(const FoundExample& example, const RecordSet& set);
    /// The row of the names, which no other row may repeat.
    void SetNames(const RecipeField& row) { names_ = row; }
    /// The one of those for one element.
    std::optional<RecipeField> BestRow(const FoundExample& example, const RecordSet& set);

private:
    QString SelectorOfPart(NodeIndex part, RecordSpan record, const RecordSet& set);
    std::optional<RecipeField> RowOfBoth(const FoundExample& example, const RecordSet& set);
    bool HoldsForOthers(const RecipeField& row, const FoundExample& example, const RecordSet& set);

    bool IsDoubtful(const RecipeField& row, const FoundExample& example, const RecordSet& set);
    bool ReadsNumbers(const RecipeField& row, const RecordSet& set);
    double NamesIn(const RecipeField& row, const FoundExample& example, const RecordSet& set);

    LearnPage& in_;
    std::optional<RecipeField> names_;
};

} // namespace Brindle
