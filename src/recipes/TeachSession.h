#pragma once

#include "recipes/LearnDetails.h"
#include "recipes/LearnRecipe.h"
#include "recipes/RecipeReader.h"
#include "recipes/TeachTexts.h"

#include <memory>
#include <optional>
#include <set>

namespace Brindle {

/// Why the last thing that was said could not be taken.
enum class TeachProblem : quint8 {
    None,
    NameFirst,   ///< nothing can be said of a business before its name
    NothingLike, ///< the other businesses have nothing of that kind there
    NoLink,      ///< the element leads to no page of this website
    NotFetched   ///< a harvest, which runs no scripts of the page, does not get what the element shows
};

/// What a person says of the businesses on a page, one thing after the other, and the recipe that comes of it. It
/// begins with what the program sees by itself. What `Reading` gives is what a harvest of the recipe gives for this
/// page.
class TeachSession {
public:
    /// `page` was loaded from `url`. `mend`: a recipe that does not fit the page any more, of which what still fits is
    /// kept.
    TeachSession(std::shared_ptr<const PageTree> page, const QString& url, const std::optional<Recipe>& mend = {});

    /// The page that is shown has rebuilt itself: what was said holds for the new document.
    void SetPage(std::shared_ptr<const PageTree> page);
    /// The page that is shown and pointed at.
    const PageTree& Page() const { return own_ ? *own_->Page : *page_; }

    /// "This element shows this field of its business." Said of the same field in another business, both hold. False
    /// when no list could be made of it; nothing changes then, and `Problem` says why.
    bool Say(Field column, NodeIndex element);
    /// A field that the program or a person was wrong about.
    void Forget(Field column);
    /// The element is the link to the next page, or the button that brings more into this one. False when it is none.
    bool SayNext(NodeIndex element);
    void ForgetNext();
    /// The element is the link to a business's own page, which a harvest reads too. False when it is none.
    bool SayDetails(NodeIndex element);
    void ReadDetails(bool read);
    /// The addresses of the first businesses' own pages.
    QStringList OwnPages(qsizetype most) const;
    /// The own page of a business is shown instead of the list: what is said from now on is of such pages. `shown` is
    /// what the browser shows, `pages` are those of some businesses as a harvest gets them, the one that is shown
    /// first.
    void OpenOwnPage(OwnPage shown, std::vector<OwnPage> pages);
    /// The list is shown again, as this document.
    void CloseOwnPage(std::shared_ptr<const PageTree> list);
    bool OnOwnPage() const { return own_.has_value(); }
    /// Of how many businesses the own pages are there.
    size_t OwnPagesRead() const { return ownPages_.size(); }
    /// The country whose addresses and phones these are; the address of a search, empty for none.
    void SetAbout(const QString& country, const QString& search);
    /// Takes the elements of a selector for the records, as one of the lists that the program considered. False when
    /// nothing can be read of them.
    bool TakeList(const QString& recordSelector);

    const Recipe& What() const { return recipe_; }
    const RecipeReading& Reading() const { return reading_; }
    /// The businesses of the list as a harvest gives them, with their own pages as far as these have been fetched.
    std::vector<Lead> Leads() const;
    /// Of the list on the web, also where it was opened from disk.
    const QString& Address() const { return url_; }
    TeachProblem Problem() const { return problem_; }
    /// Whether the program added a column by itself.
    bool IsProposed(Field column) const { return !said_.contains(column) && !saidOfOwn_.contains(column); }

    /// Which field an element is likely to show, the likeliest first; all of them.
    std::vector<Field> LikelyFields(NodeIndex element) const;
    /// The elements that correspond to this one in the other records, this one among them.
    std::vector<NodeIndex> LikesOf(NodeIndex element) const;
    /// The elements from which a field is read, at most one a record.
    std::vector<NodeIndex> ElementsOf(Field column) const;
    /// The texts of the first record; of the whole page where there are no records yet.
    std::vector<ChoosableText> Texts() const;
    /// The links and buttons beside the records, among which the one to the next page is.
    std::vector<ChoosableText> Links() const;

private:
    struct Said {
        Field Column;
        NodeIndex Node;
    };

    int RecordOf(NodeIndex element) const;
    int RecordNear(NodeIndex element) const;
    NodeIndex ReadAround(Field column, NodeIndex element) const;
    bool IsReadAs(Field column, NodeIndex element) const;
    NodeIndex FirstOf(const QString& selector, const PageRecord& record) const;
    std::vector<NodeIndex> FirstsOf(const QString& selector) const;
    std::vector<RecipeExample> ExamplesOfBusiness(const Said& now) const;
    std::vector<RecipeExample> AllExamples(const Said& now) const;
    bool SayOfOwnPage(Field column, NodeIndex element);
    bool TakeExamples(Field column, const std::vector<RecipeExample>& examples);
    const RecipeField* RowOf(Field column) const;
    void PutRow(const RecipeField& row);
    void Drop(Field column);
    void BeginByItself();
    bool BeginMending(const Recipe& recipe);
    void KeepBeside(const Recipe& recipe);
    bool LearnFromOneOf(const std::vector<PageRecord>& records);
    bool LearnFrom(const Lead& first);
    void Take(LearnedRecipe learned, const std::set<Field>& said);
    void Read();

    std::shared_ptr<const PageTree> page_;
    QString url_;
    AnyPageReading seen_; // what the program sees by itself
    QString region_;      // of the page, as far as it says
    Recipe recipe_;
    RecipeReading reading_;
    std::set<Field> said_;
    std::vector<Said> saidOf_; // with the elements, as long as the page is the same
    std::set<Field> forgotten_;
    std::optional<OwnPage> own_; // that is shown
    std::vector<OwnPage> ownPages_;
    std::set<Field> saidOfOwn_;
    TeachProblem problem_ = TeachProblem::None;
};

} // namespace Brindle
