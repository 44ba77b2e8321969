#include "recipes/LearnRecipe.h"

#include "core/Errors.h"
#include "discovery/AnyPage.h"
#include "discovery/NextPage.h"
#include "discovery/RecordsAddress.h"
#include "discovery/RecordsContacts.h"
#include "discovery/StructuredLinks.h"
#include "recipes/ExampleText.h"
#include "recipes/LearnAddress.h"
#include "recipes/LearnRecords.h"
#include "recipes/LearnStrangers.h"
#include "recipes/LearnStructured.h"
#include "recipes/PageAsides.h"
#include "recipes/RecipePattern.h"
#include "recipes/RecipeReader.h"
#include "toolkit/PageAddress.h"

#include <algorithm>
#include <optional>

namespace Brindle {

using namespace Qt::StringLiterals;

LearnPage::LearnPage(const PageTree& page, const QString& url, const AnyPageReading& any)
    : Page(page),
      Url(url),
      Base(BaseAddressOf(page, url)),
      Lines(page),
      Source{Page, Lines, Base},
      Places(Source),
      Trial(Source),
      Any(any),
      Witness(any, Trial),
      Aside(NodesAside(page)) {}

namespace {

QString CaptionOf(Field column) {
    return EnglishCaptions()[static_cast<int>(column)];
}

QString SaidOf(const FoundExample& example) {
    return u"%1=%2"_s.arg(CaptionOf(example.What.Column), example.Text);
}

constexpr double fewAlike = 0.5;  // agreement with what any page is read for, below which a list is doubted
constexpr double muchAlike = 0.6; // and from which its word is taken

class Learner {
public:
    Learner(const PageTree& page, const QString& url, const AnyPageReading& any) : in_(page, url, any) {}

    LearnedRecipe Learn(const std::vector<RecipeExample>& examples) {
        Find(examples);
        std::optional<RecordSet> best = RecordFinder(in_, rows_).Find();
        RefuseWhatStandsElsewhere(best);
        if (!best)
            throw Failure(WhyNoList());
        LearnedRecipe learned;
        Recipe& recipe = learned.What;
        recipe.Name = HostOfAddress(in_.Url);
        recipe.Home = HomeOf(in_.Url);
        recipe.Records = best->Selector;
        recipe.Flat = best->Flat;
        recipe.Next = automaticNextPage.toString();
        recipe.Country = CountryOfPage();
        AddRows(*best, recipe);
        if (const std::optional<QString> selector = SelectorWithoutStrangers(in_, *best, recipe)) {
            recipe.Records = best->Selector = *selector;
            best->Members = in_.Trial.Records(*selector, false);
        }
        AddDetailsLink(*best, recipe);
        std::stable_sort(recipe.Fields.begin(), recipe.Fields.end(),
                         [](const RecipeField& a, const RecipeField& b) { return a.Column < b.Column; });
        Check(*best, recipe);
        Propose(*best, learned);
        learned.Beside = in_.Witness.CountBeside(best->Members);
        return learned;
    }

private:
    void Find(const std::vector<RecipeExample>& examples) {
        for (const RecipeExample& example : examples) {
            FoundExample found{.What = example, .Text = example.Text, .Places = {}};
            if (example.Node != noNode) {
                const ExamplePlace place = in_.Places.Pointed(example.Column, example.Node);
                const RecipePattern cut(place.Pattern);
                QString text = RawFieldValue(in_.Source, place.Node, example.Column, place.Attribute, cut);
                cut.Apply(text);
                found.Text = FinishedFieldValue(example.Column, in_.Base, text);
                found.Places.push_back(place);
            } else {
                found.Places = in_.Places.Find(example.Column, example.Text);
                // "416-555-0100;416-555-0101" as leads have them: the first one stands for all.
                if (const qsizetype first = example.Text.indexOf(u';'); found.Places.empty() && first > 0) {
                    found.Text = found.What.Text = example.Text.first(first).trimmed();
                    found.Places = in_.Places.Find(example.Column, found.Text);
                }
            }
            if (found.Places.empty() || found.Text.isEmpty())
                throw Failure(WhyNotFound(example));
            in_.Businesses = std::max(in_.Businesses, example.Business + 1);
            in_.Examples.push_back(std::move(found));
        }
    }

    QString WhyNotFound(const RecipeExample& example) const {
        const QString said = u"%1=%2"_s.arg(CaptionOf(example.Column), example.Text);
        const QStringList parts = example.Text.split(u',', Qt::SkipEmptyParts);
        const bool inParts = parts.size() > 1 && std::all_of(parts.begin(), parts.end(), [&](const QString& part) {
                                 return !in_.Places.Find(Field::Category, part.trimmed()).empty();
                             });
        return inParts
                   ? u"%1: its parts stand on the page, but not one after the other in the record of a business"_s.arg(
                         said)
                   : u"%1: not found on the page"_s.arg(said);
    }

    // An example that stands above several businesses or beside them, not in one's record, leads to a wrong list.
    void RefuseWhatStandsElsewhere(const std::optional<RecordSet>& best) {
        const size_t members = best ? best->Members.size() : 0;
        const bool isDoubtful =
            !best || in_.Witness.Agreement(best->Members) < fewAlike || in_.Witness.HasSeveralIn(best->Members);
        if (!isDoubtful || in_.Examples.size() < 2)
            return;
        const std::vector<FoundExample> examples = in_.Examples;
        for (const FoundExample& example : examples) {
            if (example.What.Column == Field::BusinessName || example.What.Node != noNode)
                continue;
            std::erase_if(in_.Examples,
                          [&](const FoundExample& other) { return other.What.Column == example.What.Column; });
            const std::optional<RecordSet> others = RecordFinder(in_, rows_).Find();
            in_.Examples = examples;
            const bool isMore = others && others->Members.size() > members && others->Named > 0.9;
            if (isMore && (!best || RecordFinder::IsGroupOf(*others, *best) ||
                           in_.Witness.Agreement(others->Members) > muchAlike))
                throw Failure(
                    u"%1: does not stand with the other examples in the record of one business"_s.arg(SaidOf(example)));
        }
    }

    // ------------------------------------------------------------------------------------------------- the fields

    static bool Has(const Recipe& recipe, Field column) {
        return std::any_of(recipe.Fields.begin(), recipe.Fields.end(),
                           [column](const RecipeField& field) { return field.Column == column; });
    }

    void AddRows(const RecordSet& set, Recipe& recipe) {
        std::vector<AddressRows::Part> parts;
        // The names first: what repeats them is no other column.
        std::vector<const FoundExample*> examples;
        for (const FoundExample& example : in_.Examples)
            examples.push_back(&example);
        std::stable_partition(examples.begin(), examples.end(),
                              [](const FoundExample* example) { return example->What.Column == Field::BusinessName; });
        for (const FoundExample* each : examples) {
            const FoundExample& example = *each;
            const auto isSame = [&](const AddressRows::Part& part) {
                return part.Example->What.Column == example.What.Column;
            };
            if (Has(recipe, example.What.Column) || std::any_of(parts.begin(), parts.end(), isSame))
                continue;
            const std::optional<RecipeField> row = rows_.Row(example, set);
            const bool isText = example.What.Node == noNode && AddressRows::IsPart(example.What.Column);
            if (isText && (!row || !row->Pattern.isEmpty())) {
                parts.push_back({&example, row});
                continue;
            }
            if (!row)
                throw Failure(WhyNoRow(example, set));
            recipe.Fields.push_back(*row);
            if (example.What.Column == Field::BusinessName)
                rows_.SetNames(*row);
        }
        AddressRows(in_, rows_, recipe.Country).Add(parts, set, recipe);
        if (!Has(recipe, Field::BusinessName))
            throw Failure(u"an example of Business Name is missing"_s);
    }

    QString WhyNoList() const {
        for (const FoundExample& example : in_.Examples)
            if (example.What.Node == noNode &&
                std::all_of(example.Places.begin(), example.Places.end(),
                            [](const ExamplePlace& place) { return place.Cost >= ExamplePlaces::Unreadable; }))
                return u"%1: stands in one text with much else, which nothing takes apart"_s.arg(SaidOf(example));
        return u"%1: nothing else on the page is made like it"_s.arg(SaidOf(in_.Examples.front()));
    }

    // What is the matter with an example that stands in its record, and is not read.
    QString WhyNoRow(const FoundExample& example, const RecordSet& set) const {
        for (const FoundExample& other : in_.Examples)
            if (other.What.Column == example.What.Column && other.What.Business != example.What.Business)
                return u"%1: nothing reads both it and \u201C%2\u201D"_s.arg(SaidOf(example), other.Text);
        const RecordSpan record = set.Of(example);
        const bool isPart = std::all_of(example.Places.begin(), example.Places.end(), [&](const ExamplePlace& place) {
            return place.Node < record.Begin || place.Node >= record.End || !place.Pattern.isEmpty() ||
                   place.Cost >= ExamplePlaces::Unreadable;
        });
        return isPart ? u"%1: stands in one text with other things, and nothing takes it out of there"_s.arg(
                            SaidOf(example))
                      : u"%1: no selector holds for it and the other records"_s.arg(SaidOf(example));
    }

    // A name that is a link, or stands in one, leads to the record's own page.
    void AddDetailsLink(const RecordSet& set, Recipe& recipe) {
        if (Has(recipe, Field::DetailsLink))
            return;
        const RecordSpan record = set.OfBusiness.front();
        for (const FoundExample& example : in_.Examples) {
            if (example.What.Column != Field::BusinessName || example.What.Business != 0)
                continue;
            std::vector<ExamplePlace> places = example.Places;
            std::stable_sort(places.begin(), places.end(),
                             [](const ExamplePlace& a, const ExamplePlace& b) { return a.Cost < b.Cost; });
            for (const ExamplePlace& place : places) {
                const NodeIndex link =
                    place.Node >= record.Begin && place.Node < record.End ? LinkAt(place.Node, record) : noNode;
                if (link == noNode)
                    continue;
                const QString address = WebAddress(in_.Base, in_.Page.Attribute(link, u"href"));
                if (!IsSameSite(address, in_.Url) || WithoutFragment(address) == WithoutFragment(in_.Url))
                    continue;
                const FoundExample implied{
                    .What = {.Column = Field::DetailsLink}, .Text = address, .Places = {{.Node = link}}};
                const std::optional<RecipeField> row = rows_.BestRow(implied, set);
                if (row && in_.Trial.FillOf(*row, set.Members).Difference > 0.7) {
                    recipe.Fields.push_back(*row);
                    return;
                }
            }
        }
        // "More" at the end of each record, as any page is read.
        for (const PageRecord& known : in_.Any.Records) {
            const QString& address = known.Fields.DetailsLink;
            if (known.End <= record.Begin || known.Begin >= record.End || address.isEmpty() ||
                !RedirectTarget(address).isEmpty())
                continue;
            const FoundExample implied{.What = {.Column = Field::DetailsLink},
                                       .Text = address,
                                       .Places = in_.Places.Find(Field::DetailsLink, address)};
            const std::optional<RecipeField> row = rows_.BestRow(implied, set);
            if (row && in_.Trial.FillOf(*row, set.Members).Difference > 0.9 &&
                in_.Witness.Agreement(*row, set.Members) > 0.8)
                recipe.Fields.push_back(*row);
            return;
        }
    }

    NodeIndex LinkAt(NodeIndex node, RecordSpan record) const {
        for (NodeIndex at = node; at != noNode && at >= record.Begin && at < record.End; at = in_.Page.Parent(at))
            if (in_.Page.Is(at, u"a"))
                return at;
        for (NodeIndex at = node; at < in_.Page.End(node); ++at)
            if (in_.Page.Is(at, u"a"))
                return at;
        return noNode;
    }

    // Whose addresses and phones these are, where that is sure.
    QString CountryOfPage() const {
        const AddressHints hints = AddressHintsOf(in_.Page, in_.Lines, in_.Url, {});
        const CountryGuess guess = GuessCountry(hints);
        return guess.Sure ? guess.Region : hints.Country;
    }

    // --------------------------------------------------------------------------------------------------- the check

    // Reads the page as a harvest would; the examples must come out.
    void Check(const RecordSet& set, Recipe& recipe) const {
        const RecipeReading reading = RecipeReader(recipe).Read(in_.Page, in_.Url);
        if (reading.Records.size() < 2)
            throw Failure(u"nothing on the page holds for more than one record"_s);
        for (const FoundExample& example : in_.Examples) {
            const int column = static_cast<int>(example.What.Column);
            const bool comesOut =
                std::any_of(reading.Records.begin(), reading.Records.end(), [&](const PageRecord& record) {
                    return record.Begin == set.Of(example).Begin &&
                           IsExample(example.What.Column, record.Fields.At(column), example.Text);
                });
            if (!comesOut)
                throw Failure(u"%1=%2: does not come out of what was learned"_s.arg(CaptionOf(example.What.Column),
                                                                                    example.Text));
        }
        recipe.Taught = reading.Counts;
    }

    // What any page is read by may hold for the columns that nobody spoke of.
    void Propose(const RecordSet& set, LearnedRecipe& learned) {
        for (const FieldReading& reading : in_.Any.Fields) {
            if (Has(learned.What, reading.Column) || reading.Selector.isEmpty())
                continue;
            RecipeProposal proposal{.Row = {.Column = reading.Column, .Selector = reading.Selector}, .Sample = {}};
            try {
                const RecipeTrial::Fill fill = in_.Trial.FillOf(proposal.Row, set.Members);
                proposal.Filled = fill.Filled;
                proposal.Sample = fill.Sample;
            } catch (const Failure&) {
                continue; // a selector of another kind
            }
            if (proposal.Filled * 5 >= static_cast<int>(set.Members.size()))
                learned.Proposals.push_back(std::move(proposal));
        }
    }

    LearnPage in_;
    RowFinder rows_{in_};
};

} // namespace

LearnedRecipe LearnRecipe(const PageTree& page, const QString& url, const std::vector<RecipeExample>& examples) {
    return LearnRecipe(page, url, examples, ReadAnyPage(page, url, Selectors::Made));
}

LearnedRecipe LearnRecipe(const PageTree& page, const QString& url, const std::vector<RecipeExample>& examples,
                          const AnyPageReading& any) {
    try {
        return Learner(page, url, any).Learn(examples);
    } catch (const Failure&) {
        if (std::optional<LearnedRecipe> structured = LearnStructured(page, url, examples))
            return std::move(*structured);
        throw;
    }
}

} // namespace Brindle
