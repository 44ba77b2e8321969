#pragma once

#include "discovery/AnyPage.h"
#include "recipes/AnyPageWitness.h"
#include "recipes/LearnRecipe.h"
#include "recipes/RecipeTrial.h"

#include <vector>

namespace Brindle {

/// An example, and where it stands.
struct FoundExample {
    RecipeExample What;
    QString Text{};
    std::vector<ExamplePlace> Places{};
};

/// The elements that could be the records, and a record of them for each business.
struct RecordSet {
    QString Selector;
    double Score = 0;
    bool Flat = false;
    std::vector<RecordSpan> Members;
    std::vector<RecordSpan> OfBusiness; ///< by its number
    double Named = 0;                   ///< the share of them that the best row of names fills

    RecordSpan Of(const FoundExample& example) const { return OfBusiness[static_cast<size_t>(example.What.Business)]; }
};

/// A page in hand while a recipe is made of it.
struct LearnPage {
    LearnPage(const PageTree& page, const QString& url, const AnyPageReading& any);
    LearnPage(const LearnPage&) = delete;
    LearnPage& operator=(const LearnPage&) = delete;

    const PageTree& Page;
    const QString& Url;
    const QString Base;
    const PageLines Lines;
    const ValueSource Source;
    const ExamplePlaces Places;
    RecipeTrial Trial;
    const AnyPageReading& Any; ///< what the page is read as without examples
    AnyPageWitness Witness;
    const std::vector<char> Aside; ///< for each node
    std::vector<FoundExample> Examples;
    int Businesses = 1;
};

} // namespace Brindle
