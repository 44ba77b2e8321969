#include "recipes/LearnRecipe.h"

#include "core/Errors.h"
#include "discovery/AnyPage.h"
#include "discovery/NextPage.h"
#include "discovery/RecordsAddress.h"
#include "discovery/StructuredLinks.h"
#include "recipes/AnyPageWitness.h"
#include "recipes/LearnStructured.h"
#include "recipes/PageAsides.h"
#include "recipes/RecipePattern.h"
#include "recipes/RecipeReader.h"
#include "recipes/RecipeTrial.h"
#include "recipes/SturdySelectors.h"
#include "toolkit/PageAddress.h"

#include <QHash>

#include <algorithm>
#include <optional>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostLevels = 8;      // from the examples up to the record
constexpr size_t mostTogether = 6; // places where the examples stand together that are tried
constexpr size_t mostRows = 40;    // rows that are tried for a column
constexpr size_t fewRows = 5;      // rows that are tried for each set of records

QString CaptionOf(Field column) {
    return EnglishCaptions()[static_cast<int>(column)];
}

struct FoundExample {
    RecipeExample What;
    QString Text;
    std::vector<ExamplePlace> Places;
};

// The elements that could be the records, and a record of them for each business.
struct RecordSet {
    QString Selector;
    double Score = 0;
    bool Flat = false;
    std::vector<RecordSpan> Members;
    std::vector<RecordSpan> OfBusiness; // by its number
    double Named = 0;                   // the share of them that the best row of names fills
};

struct RatedRow {
    RecipeField Row;
    double Cost = 0;
};

class Learner {
public:
    Learner(const PageTree& page, const QString& url, const AnyPageReading& any)
        : page_(page),
          url_(url),
          base_(BaseAddressOf(page, url)),
          lines_(page),
          source_{page_, lines_, base_},
          places_(source_),
          trial_(source_),
          any_(any),
          witness_(any, trial_),
          aside_(NodesAside(page)) {}

    LearnedRecipe Learn(const std::vector<RecipeExample>& examples) {
        Find(examples);
        std::optional<RecordSet> best = BestRecords();
        // Half of a page holds two records as well: what the examples promise for many goes before it.
        if (std::optional<RecordSet> flat = BestFlatRecords(); flat && (!best || flat->Score > 1.5 * best->Score))
            best = std::move(flat);
        if (!best)
            throw Failure(u"nothing on the page holds for more than one record"_s);
        LearnedRecipe learned;
        Recipe& recipe = learned.What;
        recipe.Name = HostOfAddress(url_);
        recipe.Home = HomeOf(url_);
        recipe.Records = best->Selector;
        recipe.Flat = best->Flat;
        recipe.Next = automaticNextPage.toString();
        AddRows(*best, recipe);
        AddDetailsLink(*best, recipe);
        recipe.Country = CountryOfPage();
        std::stable_sort(recipe.Fields.begin(), recipe.Fields.end(),
                         [](const RecipeField& a, const RecipeField& b) { return a.Column < b.Column; });
        Check(recipe);
        Propose(*best, learned);
        return learned;
    }

private:
    void Find(const std::vector<RecipeExample>& examples) {
        for (const RecipeExample& example : examples) {
            FoundExample found{.What = example, .Text = example.Text, .Places = {}};
            if (example.Node != noNode) {
                const ExamplePlace place = places_.Pointed(example.Column, example.Node);
                const RecipePattern cut(place.Pattern);
                QString text = RawFieldValue(source_, place.Node, example.Column, place.Attribute, cut);
                cut.Apply(text);
                found.Text = FinishedFieldValue(example.Column, base_, text);
                found.Places.push_back(place);
            } else {
                found.Places = places_.Find(example.Column, example.Text);
                // "416-555-0100;416-555-0101" as leads have them: the first one stands for all.
                if (const qsizetype first = example.Text.indexOf(u';'); found.Places.empty() && first > 0) {
                    found.Text = found.What.Text = example.Text.first(first).trimmed();
                    found.Places = places_.Find(example.Column, found.Text);
                }
            }
            if (found.Places.empty() || found.Text.isEmpty())
                throw Failure(u"%1=%2: not found on the page"_s.arg(CaptionOf(example.Column), example.Text));
            businesses_ = std::max(businesses_, example.Business + 1);
            examples_.push_back(std::move(found));
        }
    }

    // ------------------------------------------------------------------------------------------------ the records

    bool HasPlaceIn(const FoundExample& example, RecordSpan record) const {
        const auto at = std::lower_bound(example.Places.begin(), example.Places.end(), record.Begin,
                                         [](const ExamplePlace& place, NodeIndex n) { return place.Node < n; });
        return at != example.Places.end() && at->Node < record.End;
    }

    RecordSpan SpanOf(NodeIndex node) const { return {node, page_.End(node)}; }

    bool HoldsAll(int business, RecordSpan record) const {
        QString folded; // what stands in a flat record without an element of its own
        return std::all_of(examples_.begin(), examples_.end(), [&](const FoundExample& example) {
            if (example.What.Business != business || HasPlaceIn(example, record))
                return true;
            if (record.Flat && folded.isEmpty())
                folded = FoldedExample(FlatRecordText(source_, record));
            return record.Flat && folded.contains(FoldedExample(example.Text));
        });
    }

    // The smallest elements in which all examples of the first business stand, the smallest first.
    std::vector<NodeIndex> Together() const {
        const FoundExample* anchor = nullptr;
        for (const FoundExample& example : examples_)
            if (example.What.Business == 0 && (!anchor || example.Places.size() < anchor->Places.size()))
                anchor = &example;
        std::vector<NodeIndex> found;
        if (!anchor)
            return found;
        for (const ExamplePlace& place : anchor->Places) {
            NodeIndex node = place.Node;
            while (node != noNode && !HoldsAll(0, SpanOf(node)))
                node = page_.Parent(node);
            if (node != noNode && std::find(found.begin(), found.end(), node) == found.end())
                found.push_back(node);
        }
        std::stable_sort(found.begin(), found.end(), [this](NodeIndex a, NodeIndex b) {
            const NodeIndex sizeA = page_.End(a) - a;
            const NodeIndex sizeB = page_.End(b) - b;
            return aside_[size_t(a)] != aside_[size_t(b)] ? aside_[size_t(b)] : sizeA < sizeB;
        });
        found.resize(std::min(found.size(), mostTogether));
        return found;
    }

    std::optional<RecordSet> BestRecords() {
        std::optional<RecordSet> best;
        for (const NodeIndex together : Together()) {
            std::optional<RecordSet> bestHere;
            NodeIndex record = together;
            for (int level = 0;
                 level < mostLevels && record != noNode && record != page_.Body() && record != page_.Root();
                 ++level, record = page_.Parent(record)) {
                // A wider element with as many records is the whole record; one that holds several whole ones is their
                // group.
                std::optional<RecordSet> set = BestSelector(record, false);
                if (set && (!bestHere || (set->Score >= bestHere->Score * 0.98 && !IsGroupOf(*bestHere, *set))))
                    bestHere = std::move(set);
            }
            if (bestHere && (!best || bestHere->Score > best->Score * 1.02))
                best = std::move(bestHere);
        }
        return best;
    }

    // Whether every one of the wider elements holds records, some of them several, and no record lies elsewhere.
    bool IsGroupOf(const RecordSet& records, const RecordSet& wider) const {
        if (records.Members.size() <= wider.Members.size() || records.Named < 0.95)
            return false;
        size_t next = 0;
        for (const RecordSpan group : wider.Members) {
            const size_t first = next;
            while (next < records.Members.size() && records.Members[next].Begin < group.End)
                if (records.Members[next++].Begin < group.Begin)
                    return false;
            if (next == first)
                return false;
        }
        return next == records.Members.size();
    }

    // Records that nothing holds together: a name, and what follows it up to the next name.
    std::optional<RecordSet> BestFlatRecords() {
        std::optional<RecordSet> best;
        for (const NodeIndex together : Together()) {
            for (NodeIndex child = page_.FirstChild(together); child != noNode; child = page_.NextSibling(child)) {
                const auto isIn = [&](const FoundExample& example) {
                    return example.What.Business == 0 && example.What.Column == Field::BusinessName &&
                           HasPlaceIn(example, SpanOf(child));
                };
                if (!page_.IsElement(child) || std::none_of(examples_.begin(), examples_.end(), isIn))
                    continue;
                std::optional<RecordSet> set = BestSelector(child, true, RowsWithNames(child));
                if (set && (!best || set->Score > best->Score))
                    best = std::move(set);
            }
        }
        return best;
    }

    // What begins a record of a flat list may be told from what follows only by the name in it.
    std::vector<CandidateSelector> RowsWithNames(NodeIndex child) const {
        std::vector<CandidateSelector> found;
        for (const FoundExample& example : examples_)
            for (const ExamplePlace& place : example.Places)
                if (example.What.Business == 0 && example.What.Column == Field::BusinessName && place.Node > child &&
                    place.Node < page_.End(child) && found.size() < 8)
                    for (const CandidateSelector& inner : OwnSelectors(page_, place.Node))
                        found.push_back({page_.Name(child) + u":has(" + inner.Text + u')', 3 + inner.Cost});
        return found;
    }

    std::optional<RecordSet> BestSelector(NodeIndex element, bool flat, std::vector<CandidateSelector> more = {}) {
        std::vector<CandidateSelector> candidates = RecordSelectors(page_, element);
        candidates.insert(candidates.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
        std::stable_sort(candidates.begin(), candidates.end(),
                         [](const CandidateSelector& a, const CandidateSelector& b) { return a.Cost < b.Cost; });
        std::optional<RecordSet> best;
        std::vector<std::vector<RecordSpan>> seen;
        for (const CandidateSelector& candidate : candidates) {
            RecordSet set{.Selector = candidate.Text,
                          .Flat = flat,
                          .Members = trial_.Records(candidate.Text, flat),
                          .OfBusiness = {}};
            const auto own = std::find_if(set.Members.begin(), set.Members.end(),
                                          [element](RecordSpan member) { return member.Begin == element; });
            if (set.Members.size() < 2 || own == set.Members.end() || !HoldsAll(0, *own))
                continue;
            set.OfBusiness.push_back(*own);
            if (std::find(seen.begin(), seen.end(), set.Members) != seen.end() || !FindBusinesses(set))
                continue;
            seen.push_back(set.Members);
            std::vector<std::vector<RatedRow>> rows;
            for (const FoundExample& example : examples_)
                rows.push_back(example.What.Business == 0 ? RowsFor(example, set.OfBusiness.front(), fewRows)
                                                          : std::vector<RatedRow>());
            set.Score = ScoreOf(set, rows) - 0.02 * candidate.Cost;
            if (set.Score > 0 && (!best || set.Score > best->Score))
                best = std::move(set);
        }
        return best;
    }

    // Every business is a record of its own.
    bool FindBusinesses(RecordSet& set) const {
        for (int business = 1; business < businesses_; ++business) {
            const auto at = std::find_if(set.Members.begin(), set.Members.end(), [&](RecordSpan member) {
                return HoldsAll(business, member) &&
                       std::find(set.OfBusiness.begin(), set.OfBusiness.end(), member) == set.OfBusiness.end();
            });
            if (at == set.Members.end())
                return false;
            set.OfBusiness.push_back(*at);
        }
        return true;
    }

    // What an element and those that hold it are called, without what differs from record to record.
    QString Surroundings(NodeIndex node) {
        QString text = page_.Name(node).toString();
        for (int level = 0; level < 3 && page_.Parent(node) != noNode; ++level) {
            node = page_.Parent(node);
            QString& name = names_[node];
            if (name.isEmpty())
                name = OwnSelectors(page_, node).front().Text;
            text += u'/' + name;
        }
        return text;
    }

    // How many of the records stand where the example's stands.
    double Alike(const RecordSet& set) {
        const QString own = Surroundings(set.OfBusiness.front().Begin);
        const auto count = std::count_if(set.Members.begin(), set.Members.end(),
                                         [&](RecordSpan member) { return Surroundings(member.Begin) == own; });
        return static_cast<double>(count) / static_cast<double>(set.Members.size());
    }

    // How many records hold what the examples promise; what does not counts against it.
    double ScoreOf(RecordSet& set, const std::vector<std::vector<RatedRow>>& rows) {
        double sum = 0;
        double weakest = 1;
        int count = 0;
        for (size_t i = 0; i < examples_.size(); ++i) {
            if (examples_[i].What.Business != 0)
                continue;
            double best = 0;
            double all = 0;
            for (const RatedRow& row : rows[i]) {
                const RecipeTrial::Fill fill = trial_.FillOf(row.Row, set.Members);
                const bool isName = row.Row.Column == Field::BusinessName;
                const double share = isName && fill.Difference < 0.5 ? fill.Share * 0.3 : fill.Share;
                best = std::max(best, share);
                all += share / static_cast<double>(rows[i].size());
            }
            // Records that are of one make can be read in every way in which the example can.
            sum += (best + all) / 2;
            ++count;
            if (examples_[i].What.Column == Field::BusinessName) {
                weakest = (best + all) / 2;
                set.Named = best;
            }
        }
        if (count == 0)
            return 0;
        auto records = static_cast<double>(set.Members.size());
        // What holds nothing but the name is hardly the whole record.
        const QString record = RawFieldValue(source_, set.OfBusiness.front().Begin, Field::BusinessName, {});
        for (const FoundExample& example : examples_)
            if (!set.Flat && example.What.Business == 0 && IsExample(Field::BusinessName, record, example.Text))
                records *= 0.3;
        const bool isAside = aside_[static_cast<size_t>(set.OfBusiness.front().Begin)];
        for (const RecordSpan member : set.Members)
            records -= !isAside && aside_[static_cast<size_t>(member.Begin)] ? 2 : 0;
        const double filled = records * weakest;
        return filled < 0.5 || weakest < 0.3
                   ? 0
                   : filled * weakest * (sum / count) * Alike(set) * (1 + witness_.Agreement(set.Members));
    }

    // ------------------------------------------------------------------------------------------------- the fields

    // Rows that give an example within a record, the best first.
    std::vector<RatedRow> RowsFor(const FoundExample& example, RecordSpan record, size_t most) {
        // In a flat list, selectors look down from what holds all of it.
        const bool flat = record.Flat;
        const NodeIndex holder = flat ? page_.Parent(record.Begin) : record.Begin;
        std::vector<RatedRow> rows;
        if (flat)
            for (const QString& pattern : places_.LinePatterns(example.What.Column, FlatRecordText(source_, record),
                                                               example.What.Node == noNode ? example.Text : QString()))
                rows.push_back({{.Column = example.What.Column, .Selector = u":scope"_s, .Pattern = pattern},
                                4 + 0.1 * static_cast<double>(rows.size())});
        for (const ExamplePlace& place : example.Places) {
            if (place.Node < record.Begin || place.Node >= record.End)
                continue;
            for (const CandidateSelector& candidate :
                 FieldSelectors(page_, holder, place.Node, flat ? record.Begin : noNode)) {
                if (flat && candidate.Text.contains(u":scope"))
                    continue;
                rows.push_back({{.Column = example.What.Column,
                                 .Selector = candidate.Text,
                                 .Attribute = place.Attribute,
                                 .Pattern = place.Pattern},
                                candidate.Cost + place.Cost});
            }
        }
        std::stable_sort(rows.begin(), rows.end(),
                         [](const RatedRow& a, const RatedRow& b) { return a.Cost < b.Cost; });
        rows.resize(std::min(rows.size(), 8 * most));
        std::vector<RatedRow> good;
        for (RatedRow& row : rows) {
            const auto same = [&](const RatedRow& other) { return other.Row == row.Row; };
            if (good.size() < most && std::none_of(good.begin(), good.end(), same) &&
                IsExample(row.Row.Column, trial_.Read(row.Row, record), example.Text))
                good.push_back(std::move(row));
        }
        return good;
    }

    std::optional<RecipeField> BestRow(const FoundExample& example, const RecordSet& set) {
        std::optional<RecipeField> best;
        double bestScore = -1;
        const auto business = static_cast<size_t>(example.What.Business);
        for (const RatedRow& row : RowsFor(example, set.OfBusiness[business], mostRows)) {
            if (!HoldsForOthers(row.Row, example, set))
                continue;
            const RecipeTrial::Fill fill = trial_.FillOf(row.Row, set.Members);
            double score = fill.Share - 0.04 * row.Cost + 1.5 * witness_.Agreement(row.Row, set.Members);
            // The first of several is easily another one tomorrow.
            if (trial_.CountOf(row.Row.Selector, set.OfBusiness[business]) > 1)
                score -= 0.03;
            if (example.What.Column == Field::BusinessName)
                score -= (fill.Difference < 0.5 ? 0.5 : 0) + 0.3 * witness_.Strangers(row.Row, set.Members);
            if (score > bestScore) {
                bestScore = score;
                best = row.Row;
            }
        }
        return best;
    }

    // Where businesses are made in different ways, a row for each.
    std::optional<RecipeField> RowOfBoth(const FoundExample& example, const RecordSet& set) {
        for (const FoundExample& other : examples_) {
            if (&other == &example || other.What.Column != example.What.Column)
                continue;
            const auto rowsOf = [&](const FoundExample& each) {
                return RowsFor(each, set.OfBusiness[static_cast<size_t>(each.What.Business)], fewRows);
            };
            const std::vector<RatedRow> others = rowsOf(other);
            for (const RatedRow& one : rowsOf(example))
                for (const RatedRow& two : others) {
                    RecipeField row = one.Row;
                    row.Selector += u", " + two.Row.Selector;
                    const bool alike = one.Row.Attribute == two.Row.Attribute && one.Row.Pattern == two.Row.Pattern;
                    const QString own = trial_.Read(row, set.OfBusiness[static_cast<size_t>(example.What.Business)]);
                    if (alike && IsExample(row.Column, own, example.Text) && HoldsForOthers(row, example, set))
                        return row;
                }
        }
        return {};
    }

    // Whether a row gives what is said of the column in the other businesses too.
    bool HoldsForOthers(const RecipeField& row, const FoundExample& example, const RecordSet& set) {
        return std::all_of(examples_.begin(), examples_.end(), [&](const FoundExample& other) {
            return &other == &example || other.What.Column != row.Column ||
                   IsExample(row.Column, trial_.Read(row, set.OfBusiness[static_cast<size_t>(other.What.Business)]),
                             other.Text);
        });
    }

    static bool Has(const Recipe& recipe, Field column) {
        return std::any_of(recipe.Fields.begin(), recipe.Fields.end(),
                           [column](const RecipeField& field) { return field.Column == column; });
    }

    void AddRows(const RecordSet& set, Recipe& recipe) {
        for (const FoundExample& example : examples_) {
            if (Has(recipe, example.What.Column))
                continue;
            std::optional<RecipeField> row = BestRow(example, set);
            if (!row)
                row = RowOfBoth(example, set);
            if (!row)
                throw Failure(u"%1=%2: no selector holds for it and the other records"_s.arg(
                    CaptionOf(example.What.Column), example.Text));
            recipe.Fields.push_back(*row);
        }
        const bool hasParts = Has(recipe, Field::Address) || Has(recipe, Field::City) || Has(recipe, Field::PostalCode);
        for (RecipeField& field : recipe.Fields)
            field.SplitAddress = field.Column == Field::FullAddress && !hasParts;
        if (!Has(recipe, Field::BusinessName))
            throw Failure(u"an example of Business Name is missing"_s);
    }

    // A name that is a link, or stands in one, leads to the record's own page.
    void AddDetailsLink(const RecordSet& set, Recipe& recipe) {
        if (Has(recipe, Field::DetailsLink))
            return;
        const RecordSpan record = set.OfBusiness.front();
        for (const FoundExample& example : examples_) {
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
                const QString address = WebAddress(base_, page_.Attribute(link, u"href"));
                if (!IsSameSite(address, url_) || WithoutFragment(address) == WithoutFragment(url_))
                    continue;
                const FoundExample implied{
                    .What = {.Column = Field::DetailsLink}, .Text = address, .Places = {{.Node = link}}};
                const std::optional<RecipeField> row = BestRow(implied, set);
                if (row && trial_.FillOf(*row, set.Members).Difference > 0.7) {
                    recipe.Fields.push_back(*row);
                    return;
                }
            }
        }
        // "More" at the end of each record, as any page is read.
        for (const PageRecord& known : any_.Records) {
            const QString& address = known.Fields.DetailsLink;
            if (known.End <= record.Begin || known.Begin >= record.End || address.isEmpty())
                continue;
            const FoundExample implied{.What = {.Column = Field::DetailsLink},
                                       .Text = address,
                                       .Places = places_.Find(Field::DetailsLink, address)};
            const std::optional<RecipeField> row = BestRow(implied, set);
            if (row && trial_.FillOf(*row, set.Members).Difference > 0.9 && witness_.Agreement(*row, set.Members) > 0.8)
                recipe.Fields.push_back(*row);
            return;
        }
    }

    NodeIndex LinkAt(NodeIndex node, RecordSpan record) const {
        for (NodeIndex at = node; at != noNode && at >= record.Begin && at < record.End; at = page_.Parent(at))
            if (page_.Is(at, u"a"))
                return at;
        for (NodeIndex at = node; at < page_.End(node); ++at)
            if (page_.Is(at, u"a"))
                return at;
        return noNode;
    }

    // Whose addresses and phones these are, where that is sure.
    QString CountryOfPage() const {
        const AddressHints hints = AddressHintsOf(page_, lines_, url_, {});
        const CountryGuess guess = GuessCountry(hints);
        return guess.Sure ? guess.Region : hints.Country;
    }

    // --------------------------------------------------------------------------------------------------- the check

    // Reads the page as a harvest would; the examples must come out.
    void Check(Recipe& recipe) const {
        const RecipeReading reading = RecipeReader(recipe).Read(page_, url_);
        if (reading.Records.size() < 2)
            throw Failure(u"nothing on the page holds for more than one record"_s);
        for (const FoundExample& example : examples_) {
            const int column = static_cast<int>(example.What.Column);
            const bool comesOut =
                std::any_of(reading.Records.begin(), reading.Records.end(), [&](const PageRecord& record) {
                    return IsExample(example.What.Column, record.Fields.At(column), example.Text);
                });
            if (!comesOut)
                throw Failure(u"%1=%2: does not come out of what was learned"_s.arg(CaptionOf(example.What.Column),
                                                                                    example.Text));
        }
        recipe.Taught = reading.Counts;
    }

    // What any page is read by may hold for the columns that nobody spoke of.
    void Propose(const RecordSet& set, LearnedRecipe& learned) {
        for (const FieldReading& reading : any_.Fields) {
            if (Has(learned.What, reading.Column) || reading.Selector.isEmpty())
                continue;
            RecipeProposal proposal{.Row = {.Column = reading.Column, .Selector = reading.Selector}, .Sample = {}};
            try {
                const RecipeTrial::Fill fill = trial_.FillOf(proposal.Row, set.Members);
                proposal.Filled = fill.Filled;
                proposal.Sample = fill.Sample;
            } catch (const Failure&) {
                continue; // a selector of another kind
            }
            if (proposal.Filled * 5 >= static_cast<int>(set.Members.size()))
                learned.Proposals.push_back(std::move(proposal));
        }
    }

    const PageTree& page_;
    const QString& url_;
    const QString base_;
    const PageLines lines_;
    const ValueSource source_;
    const ExamplePlaces places_;
    RecipeTrial trial_;
    const AnyPageReading& any_; // what the page is read as without examples
    AnyPageWitness witness_;
    std::vector<char> aside_;         // for each node
    QHash<NodeIndex, QString> names_; // the best selector of elements that hold others
    std::vector<FoundExample> examples_;
    int businesses_ = 1;
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
