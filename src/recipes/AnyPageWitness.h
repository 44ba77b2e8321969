#pragma once

#include "discovery/AnyPage.h"
#include "recipes/RecipeTrial.h"

namespace Brindle {

/// What a page is read as without examples, as a witness for what is learned from them. Records are in the page's
/// order.
class AnyPageWitness {
public:
    AnyPageWitness(const AnyPageReading& any, RecipeTrial& trial) : any_(any), trial_(trial) {}

    /// The share of the records that any page is read for, too.
    double Agreement(const std::vector<RecordSpan>& records) const;
    /// Whether any page is read for several records within one of these.
    bool HasSeveralIn(const std::vector<RecordSpan>& records) const;
    /// How many records any page is read for beside these.
    int CountBeside(const std::vector<RecordSpan>& records) const;
    /// The share of the records in which a row gives what any page is read for, of those where one of them gives
    /// something.
    double Agreement(const RecipeField& row, const std::vector<RecordSpan>& records) const;
    /// The share of what is no record otherwise, advertisements and the like, that a row of names holds for.
    double Strangers(const RecipeField& name, const std::vector<RecordSpan>& records) const;

private:
    const AnyPageReading& any_;
    RecipeTrial& trial_;
};

} // namespace Brindle
