#pragma once

#include "recipes/LearnRows.h"

#include <optional>
#include <vector>

namespace Brindle {

/// Finds out how the parts of an address are read that stand in one text with the others.
class AddressRows {
public:
    /// `country`: whose addresses these are; may be empty.
    AddressRows(LearnPage& in, RowFinder& rows, QString country) : in_(in), rows_(rows), country_(std::move(country)) {}

    /// A street, town, state, postal code or country, and the row that cuts it out of a text, if there is one.
    struct Part {
        const FoundExample* Example;
        std::optional<RecipeField> Row;
    };
    static bool IsPart(Field column);

    /// Adds what gives the parts: the full address taken apart where that gives them, or else their rows. Throws
    /// `Failure` where neither does.
    void Add(const std::vector<Part>& parts, const RecordSet& set, Recipe& recipe);

private:
    bool IsSteady(const RecipeField& row, const RecordSet& set);
    bool Gives(const RecipeField& full, const FoundExample& part, const RecordSet& set);
    bool HoldsOthers(const QString& text, int business) const;
    std::optional<RecipeField> RowAround(const std::vector<Part>& parts, const RecordSet& set);

    LearnPage& in_;
    RowFinder& rows_;
    QString country_;
};

} // namespace Brindle
