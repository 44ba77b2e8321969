#pragma once

#include "discovery/AnyPage.h"
#include "discovery/AnyPageText.h"
#include "page/Selector.h"
#include "recipes/Recipe.h"
#include "recipes/RecipePattern.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace Brindle {

/// What a recipe found on a page.
struct RecipeReading {
    std::vector<PageRecord> Records; ///< those that have a name, in the page's order
    QString Next;                    ///< absolute address of the next page; empty when there is none
    QString LoadMore;                ///< selector of the button that brings more records; empty when there is none
    RecipeCounts Counts;
    QStringList Problems; ///< one line each: patterns that were given up
};

/// Reads pages by a recipe. Links are of http or https only; everything is linear in the page and bounded.
class RecipeReader {
public:
    /// Throws `Failure` for a selector that is none; one that `ReadRecipe` gave has none.
    explicit RecipeReader(Recipe recipe);
    ~RecipeReader();
    RecipeReader(RecipeReader&&) noexcept;
    RecipeReader& operator=(RecipeReader&&) noexcept;

    const Recipe& What() const { return recipe_; }

    /// Reads a result page at `url`.
    RecipeReading Read(const PageTree& page, const QString& url) const;
    /// Fills in what a record's own page at `url` says: by the rows for it, then what its structured data adds where
    /// nothing is known.
    void ReadDetails(const PageTree& page, const QString& url, Lead& lead, QStringList& problems) const;

private:
    struct Row {
        RecipeField Says;
        Selector Where;
        RecipePattern Cut;
    };
    class PageInHand;

    static std::vector<Row> RowsOf(const std::vector<RecipeField>& fields);
    void ReadStructured(PageInHand& hand, RecipeReading& reading) const;
    void ReadElements(PageInHand& hand, RecipeReading& reading) const;
    void ReadNext(PageInHand& hand, RecipeReading& reading) const;

    Recipe recipe_;
    std::optional<Selector> records_;
    std::optional<Selector> next_;
    std::vector<Row> rows_;
    std::vector<Row> detailsRows_;
};

/// Whether an element is a button, or a link that leads nowhere, which a script of the page answers to.
bool IsPageButton(const PageTree& page, NodeIndex node);

/// Adds what a page counted to the counts of a harvest.
void AddCounts(RecipeCounts& sum, const RecipeCounts& more);

/// In how many of the leads each field is filled.
RecipeCounts CountsOf(const std::vector<PageRecord>& records);

/// A field that is filled far less often than it was.
struct RecipeDrift {
    int Column = 0; ///< -1: there are no records at all
    int Seen = 0;
    int OfSeen = 0;
    int Was = 0;
    int OfWas = 0;
};
/// What is amiss against the counts that a recipe was made with; nothing where nothing was counted or all is well. What
/// could be chance is no drift.
std::vector<RecipeDrift> DriftsOf(const RecipeCounts& taught, const RecipeCounts& seen);
/// The same, one line each: "phone: filled in 2 of 25, was 24 of
/// 25". Empty where nothing was counted or all is well; what could be chance is no drift.
QStringList DriftOf(const RecipeCounts& taught, const RecipeCounts& seen);

} // namespace Brindle
