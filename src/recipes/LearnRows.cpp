#include "recipes/LearnRows.h"

#include "discovery/StructuredText.h"
#include "recipes/ExampleText.h"
#include "recipes/RecipePattern.h"
#include "recipes/SturdySelectors.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t mostRows = 40;     // rows that are tried for a column
constexpr size_t mostCompared = 60; // records, evenly taken of longer lists
constexpr double mostOfName = 1.5;  // cost of a selector by name
constexpr size_t fewRows = 5;       // of each, where two are tried together

// The parts of an address between its commas.
QStringList PartsOf(const QString& address) {
    QStringList parts;
    for (const QString& part : address.split(u',', Qt::SkipEmptyParts))
        if (const QString folded = FoldedExample(part); !folded.isEmpty())
            parts.append(folded);
    return parts;
}

// Whether a number to call stands in a text that should be an address.
bool HoldsNumber(QString text) {
    static const RecipePattern number(u"(?:^|,)\\s*([+(]?\\d[\\d ()./-]{5,}\\d)\\s*(?:,|$)"_s);
    return number.Apply(text) == RecipePattern::Outcome::Matched && DigitsOf(text).size() >= 8;
}

} // namespace

std::optional<RecipeField> RowFinder::Row(const FoundExample& example, const RecordSet& set) {
    std::optional<RecipeField> row = BestRow(example, set);
    if (example.What.Column == Field::FullAddress && (!row || IsDoubtful(*row, example, set)))
        if (std::optional<RecipeField> parts = RowOfParts(example, set);
            parts && (!row || !IsDoubtful(*parts, example, set)))
            return parts;
    return row ? row : RowOfBoth(example, set);
}

std::optional<RecipeField> RowFinder::RowOfParts(const FoundExample& example, const RecordSet& set) {
    const RecordSpan record = set.Of(example);
    if (example.What.Column != Field::FullAddress || example.What.Node != noNode || record.Flat)
        return {};
    const std::vector<NodeIndex> parts = in_.Places.Composed(example.Text, record.Begin, record.End);
    RecipeField row{.Column = example.What.Column, .Selector = {}, .Join = true};
    // One name for all of them, also where there is one more or less.
    if (!parts.empty())
        for (const CandidateSelector& own : OwnSelectors(in_.Page, parts.front())) {
            row.Selector = own.Text;
            if (own.Cost <= mostOfName && IsExample(row.Column, in_.Trial.Read(row, record), example.Text) &&
                HoldsForOthers(row, example, set))
                return row;
        }
    QStringList selectors;
    for (const NodeIndex part : parts) {
        const QString selector = SelectorOfPart(part, record, set);
        if (selector.isEmpty())
            return {};
        selectors.append(selector);
    }
    selectors.removeDuplicates();
    row.Selector = selectors.join(u", ");
    const bool holds = !parts.empty() && IsExample(row.Column, in_.Trial.Read(row, record), example.Text) &&
                       HoldsForOthers(row, example, set);
    return holds ? std::optional(row) : std::nullopt;
}

// Selects this element alone in its record, and one like it in most others.
QString RowFinder::SelectorOfPart(NodeIndex part, RecordSpan record, const RecordSet& set) {
    const QString shown = StructuredText(in_.Page).Of(part);
    // A postal code by itself is no line of an address.
    const Field column = DigitsOf(shown).size() * 2 > shown.size() ? Field::PostalCode : Field::FullAddress;
    QString best;
    double bestScore = 0;
    for (const CandidateSelector& candidate : FieldSelectors(in_.Page, record.Begin, part)) {
        const RecipeField row{.Column = column, .Selector = candidate.Text};
        if (in_.Trial.CountOf(candidate.Text, record) != 1 ||
            FoldedExample(in_.Trial.Read(row, record)) != FoldedExample(shown))
            continue;
        const double score = in_.Trial.FillOf(row, set.Members).Share - 0.04 * candidate.Cost -
                             (!HoldsNumber(shown) && ReadsNumbers(row, set) ? 0.5 : 0);
        if (score > bestScore) {
            bestScore = score;
            best = candidate.Text;
        }
    }
    return best;
}

// Rows that give an example within a record, the best first.
std::vector<RatedRow> RowFinder::RowsFor(const FoundExample& example, RecordSpan record, size_t most) {
    // In a flat list, selectors look down from what holds all of it.
    const bool flat = record.Flat;
    const NodeIndex holder = flat ? in_.Page.Parent(record.Begin) : record.Begin;
    std::vector<RatedRow> rows;
    if (flat)
        for (const QString& pattern : in_.Places.LinePatterns(example.What.Column, FlatRecordText(in_.Source, record),
                                                              example.What.Node == noNode ? example.Text : QString()))
            rows.push_back({{.Column = example.What.Column, .Selector = u":scope"_s, .Pattern = pattern},
                            4 + 0.1 * static_cast<double>(rows.size())});
    for (const ExamplePlace& place : example.Places) {
        if (place.Node < record.Begin || place.Node >= record.End)
            continue;
        for (const CandidateSelector& candidate :
             FieldSelectors(in_.Page, holder, place.Node, flat ? record.Begin : noNode)) {
            if (flat && candidate.Text.contains(u":scope"))
                continue;
            rows.push_back({{.Column = example.What.Column,
                             .Selector = candidate.Text,
                             .Attribute = place.Attribute,
                             .Pattern = place.Pattern},
                            candidate.Cost + place.Cost});
        }
    }
    std::stable_sort(rows.begin(), rows.end(), [](const RatedRow& a, const RatedRow& b) { return a.Cost < b.Cost; });
    rows.resize(std::min(rows.size(), 8 * most));
    std::vector<RatedRow> good;
    for (RatedRow& row : rows) {
        const auto same = [&](const RatedRow& other) { return other.Row == row.Row; };
        if (good.size() < most && std::none_of(good.begin(), good.end(), same) &&
            IsExample(row.Row.Column, in_.Trial.Read(row.Row, record), example.Text))
            good.push_back(std::move(row));
    }
    return good;
}

std::optional<RecipeField> RowFinder::BestRow(const FoundExample& example, const RecordSet& set) {
    std::optional<RecipeField> best;
    double bestScore = -1;
    const auto business = static_cast<size_t>(example.What.Business);
    for (const RatedRow& row : RowsFor(example, set.OfBusiness[business], mostRows)) {
        if (!HoldsForOthers(row.Row, example, set))
            continue;
        const RecipeTrial::Fill fill = in_.Trial.FillOf(row.Row, set.Members);
        double score = fill.Share - 0.04 * row.Cost + 1.5 * in_.Witness.Agreement(row.Row, set.Members);
        // The first of several is easily another one tomorrow.
        if (in_.Trial.CountOf(row.Row.Selector, set.OfBusiness[business]) > 1)
            score -= 0.03;
        if (example.What.Column == Field::BusinessName)
            score -= (fill.Difference < 0.5 ? 0.5 : 0) + 0.3 * in_.Witness.Strangers(row.Row, set.Members);
        score -= 2 * NamesIn(row.Row, example, set);
        if (score > bestScore) {
            bestScore = score;
            best = row.Row;
        }
    }
    return best;
}

// Whether lines of an address run into each other, or a row reads numbers where there is no address.
bool RowFinder::IsDoubtful(const RecipeField& row, const FoundExample& example, const RecordSet& set) {
    if (PartsOf(in_.Trial.Read(row, set.Of(example))) != PartsOf(example.Text))
        return true;
    return !HoldsNumber(example.Text) && ReadsNumbers(row, set);
}

bool RowFinder::ReadsNumbers(const RecipeField& row, const RecordSet& set) {
    const auto end = set.Members.begin() + static_cast<qsizetype>(std::min(set.Members.size(), mostCompared));
    return std::any_of(set.Members.begin(), end,
                       [&](RecordSpan record) { return HoldsNumber(in_.Trial.Read(row, record)); });
}

// In how many of the records a row gives the name: it slipped into the cell before.
double RowFinder::NamesIn(const RecipeField& row, const FoundExample& example, const RecordSet& set) {
    const auto isName = [&](RecordSpan record) {
        const QString value = in_.Trial.Read(row, record);
        return !value.isEmpty() && value == in_.Trial.Read(*names_, record);
    };
    if (!names_ || IsLinkColumn(row.Column) || row.Column == Field::BusinessName || isName(set.Of(example)))
        return 0;
    const size_t step = set.Members.size() / mostCompared + 1;
    int same = 0;
    int compared = 0;
    for (size_t i = 0; i < set.Members.size(); i += step, ++compared)
        same += isName(set.Members[i]) ? 1 : 0;
    return compared == 0 ? 0 : static_cast<double>(same) / compared;
}

// Where businesses are made in different ways, a row for each.
std::optional<RecipeField> RowFinder::RowOfBoth(const FoundExample& example, const RecordSet& set) {
    std::optional<RecipeField> best;
    double bestShare = -1;
    for (const FoundExample& other : in_.Examples) {
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
                const QString own = in_.Trial.Read(row, set.OfBusiness[static_cast<size_t>(example.What.Business)]);
                if (alike && IsExample(row.Column, own, example.Text) && HoldsForOthers(row, example, set)) {
                    if (const double share = in_.Trial.FillOf(row, set.Members).Share; share > bestShare) {
                        bestShare = share;
                        best = row;
                    }
                }
            }
    }
    return best;
}

// Whether a row gives what is said of the column in the other businesses too.
bool RowFinder::HoldsForOthers(const RecipeField& row, const FoundExample& example, const RecordSet& set) {
    return std::all_of(in_.Examples.begin(), in_.Examples.end(), [&](const FoundExample& other) {
        return &other == &example || other.What.Column != row.Column ||
               IsExample(row.Column, in_.Trial.Read(row, set.OfBusiness[static_cast<size_t>(other.What.Business)]),
                         other.Text);
    });
}

} // namespace Brindle
