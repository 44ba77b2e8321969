#include "recipes/LearnRecords.h"

#include "recipes/ExampleText.h"
#include "recipes/SturdySelectors.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostLevels = 8;      // from the examples up to the record
constexpr size_t mostTogether = 6; // places where the examples stand together that are tried
constexpr double fewNames = 0.65;  // share of different ones, below which they are none
constexpr size_t fewRows = 5;      // rows that are tried for each set of records

} // namespace

std::optional<RecordSet> RecordFinder::Find() {
    std::optional<RecordSet> best = BestRecords();
    // Half of a page holds two records as well: what the examples promise for many goes before it.
    if (std::optional<RecordSet> flat = BestFlatRecords(); flat && (!best || flat->Score > 1.5 * best->Score))
        best = std::move(flat);
    return best || in_.Businesses == 1 ? best : OfSeveralMakes();
}

// Paid entries and others with nothing in common: the lists around each of the businesses, together.
std::optional<RecordSet> RecordFinder::OfSeveralMakes() {
    const std::vector<FoundExample> examples = in_.Examples;
    const int businesses = in_.Businesses;
    RecordSet all;
    QStringList selectors;
    in_.Businesses = 1;
    for (int business = 0; business < businesses; ++business) {
        in_.Examples.clear();
        for (const FoundExample& example : examples)
            if (example.What.Business == business) {
                in_.Examples.push_back(example);
                in_.Examples.back().What.Business = 0;
            }
        const std::optional<RecordSet> set = in_.Examples.empty() ? std::nullopt : BestRecords();
        if (!set || set->Flat)
            break;
        all.OfBusiness.push_back(set->OfBusiness.front());
        all.Named = business == 0 ? set->Named : std::min(all.Named, set->Named);
        selectors.append(set->Selector);
    }
    in_.Examples = examples;
    in_.Businesses = businesses;
    selectors.removeDuplicates();
    all.Selector = selectors.join(u", ");
    if (all.OfBusiness.size() != static_cast<size_t>(businesses) || selectors.size() < 2)
        return {};
    all.Members = in_.Trial.Records(all.Selector, false);
    const bool holdAll = std::all_of(all.OfBusiness.begin(), all.OfBusiness.end(), [&](RecordSpan record) {
        return std::find(all.Members.begin(), all.Members.end(), record) != all.Members.end();
    });
    return holdAll ? std::optional(std::move(all)) : std::nullopt;
}

bool RecordFinder::HasPlaceIn(const FoundExample& example, RecordSpan record) const {
    const auto at = std::lower_bound(example.Places.begin(), example.Places.end(), record.Begin,
                                     [](const ExamplePlace& place, NodeIndex n) { return place.Node < n; });
    return at != example.Places.end() && at->Node < record.End;
}

RecordSpan RecordFinder::SpanOf(NodeIndex node) const {
    return {node, in_.Page.End(node)};
}

bool RecordFinder::HoldsAll(int business, RecordSpan record) const {
    QString folded; // what stands in a flat record without an element of its own
    return std::all_of(in_.Examples.begin(), in_.Examples.end(), [&](const FoundExample& example) {
        if (example.What.Business != business || HasPlaceIn(example, record))
            return true;
        if (record.Flat && folded.isEmpty())
            folded = FoldedExample(FlatRecordText(in_.Source, record));
        return record.Flat && folded.contains(FoldedExample(example.Text));
    });
}

// The smallest elements in which all examples of the first business stand, the smallest first.
std::vector<NodeIndex> RecordFinder::Together() const {
    const FoundExample* rarest = nullptr;
    std::vector<NodeIndex> found;
    const auto add = [&](const FoundExample& anchor) {
        for (const ExamplePlace& place : anchor.Places) {
            NodeIndex node = place.Node;
            while (node != noNode && !HoldsAll(0, SpanOf(node)))
                node = in_.Page.Parent(node);
            if (node != noNode && std::find(found.begin(), found.end(), node) == found.end())
                found.push_back(node);
        }
    };
    for (const FoundExample& example : in_.Examples)
        if (example.What.Business == 0 && (!rarest || example.Places.size() < rarest->Places.size()))
            rarest = &example;
    if (rarest)
        add(*rarest);
    std::stable_sort(found.begin(), found.end(), [this](NodeIndex a, NodeIndex b) {
        const NodeIndex sizeA = in_.Page.End(a) - a;
        const NodeIndex sizeB = in_.Page.End(b) - b;
        return in_.Aside[size_t(a)] != in_.Aside[size_t(b)] ? in_.Aside[size_t(b)] : sizeA < sizeB;
    });
    found.resize(std::min(found.size(), mostTogether));
    return found;
}

std::optional<RecordSet> RecordFinder::BestRecords() {
    std::optional<RecordSet> best;
    for (const NodeIndex together : Together()) {
        std::optional<RecordSet> bestHere;
        NodeIndex record = together;
        for (int level = 0;
             level < mostLevels && record != noNode && record != in_.Page.Body() && record != in_.Page.Root();
             ++level, record = in_.Page.Parent(record)) {
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

bool RecordFinder::IsGroupOf(const RecordSet& records, const RecordSet& wider) {
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
std::optional<RecordSet> RecordFinder::BestFlatRecords() {
    std::optional<RecordSet> best;
    for (const NodeIndex together : Together()) {
        for (NodeIndex child = in_.Page.FirstChild(together); child != noNode; child = in_.Page.NextSibling(child)) {
            const auto isIn = [&](const FoundExample& example) {
                return example.What.Business == 0 && example.What.Column == Field::BusinessName &&
                       HasPlaceIn(example, SpanOf(child));
            };
            if (!in_.Page.IsElement(child) || std::none_of(in_.Examples.begin(), in_.Examples.end(), isIn))
                continue;
            std::optional<RecordSet> set = BestSelector(child, true, RowsWithNames(child));
            if (set && (!best || set->Score > best->Score))
                best = std::move(set);
        }
    }
    return best;
}

// What begins a record of a flat list may be told from what follows only by the name in it.
std::vector<CandidateSelector> RecordFinder::RowsWithNames(NodeIndex child) const {
    std::vector<CandidateSelector> found;
    for (const FoundExample& example : in_.Examples)
        for (const ExamplePlace& place : example.Places)
            if (example.What.Business == 0 && example.What.Column == Field::BusinessName && place.Node > child &&
                place.Node < in_.Page.End(child) && found.size() < 8)
                for (const CandidateSelector& inner : OwnSelectors(in_.Page, place.Node))
                    found.push_back({in_.Page.Name(child) + u":has(" + inner.Text + u')', 3 + inner.Cost});
    return found;
}

std::optional<RecordSet> RecordFinder::BestSelector(NodeIndex element, bool flat, std::vector<CandidateSelector> more) {
    std::vector<CandidateSelector> candidates = RecordSelectors(in_.Page, element);
    candidates.insert(candidates.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const CandidateSelector& a, const CandidateSelector& b) { return a.Cost < b.Cost; });
    std::optional<RecordSet> best;
    std::vector<std::vector<RecordSpan>> seen;
    for (const CandidateSelector& candidate : candidates) {
        RecordSet set{.Selector = candidate.Text,
                      .Flat = flat,
                      .Members = in_.Trial.Records(candidate.Text, flat),
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
        for (const FoundExample& example : in_.Examples)
            rows.push_back(example.What.Business == 0 ? rows_.RowsFor(example, set.OfBusiness.front(), fewRows)
                                                      : std::vector<RatedRow>());
        set.Score = ScoreOf(set, rows) - 0.02 * candidate.Cost;
        if (set.Score > 0 && (!best || set.Score > best->Score))
            best = std::move(set);
    }
    return best;
}

// Every business is a record of its own.
bool RecordFinder::FindBusinesses(RecordSet& set) const {
    for (int business = 1; business < in_.Businesses; ++business) {
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
QString RecordFinder::Surroundings(NodeIndex node) {
    QString text = in_.Page.Name(node).toString();
    for (int level = 0; level < 3 && in_.Page.Parent(node) != noNode; ++level) {
        node = in_.Page.Parent(node);
        QString& name = names_[node];
        if (name.isEmpty())
            name = OwnSelectors(in_.Page, node).front().Text;
        text += u'/' + name;
    }
    return text;
}

// How many of the records stand where the example's stands.
double RecordFinder::Alike(const RecordSet& set) {
    const QString own = Surroundings(set.OfBusiness.front().Begin);
    const auto count = std::count_if(set.Members.begin(), set.Members.end(),
                                     [&](RecordSpan member) { return Surroundings(member.Begin) == own; });
    return static_cast<double>(count) / static_cast<double>(set.Members.size());
}

// Branches that bear one name differ in what else is said of them.
bool RecordFinder::AreToldApart(const RecordSet& set, const std::vector<std::vector<RatedRow>>& rows) {
    for (size_t i = 0; i < in_.Examples.size(); ++i) {
        const bool isOther = in_.Examples[i].What.Column != Field::BusinessName;
        if (!isOther || rows[i].empty())
            continue;
        const RecipeTrial::Fill fill = in_.Trial.FillOf(rows[i].front().Row, set.Members);
        if (fill.Share > 0.7 && fill.Difference > 0.7)
            return true;
    }
    return false;
}

// How many records hold what the examples promise; what does not counts against it.
double RecordFinder::ScoreOf(RecordSet& set, const std::vector<std::vector<RatedRow>>& rows) {
    double sum = 0;
    double weakest = 1;
    int count = 0;
    const bool told = AreToldApart(set, rows);
    for (size_t i = 0; i < in_.Examples.size(); ++i) {
        if (in_.Examples[i].What.Business != 0)
            continue;
        const bool isName = in_.Examples[i].What.Column == Field::BusinessName;
        double best = 0;
        double all = 0;
        for (const RatedRow& row : rows[i]) {
            const RecipeTrial::Fill fill = in_.Trial.FillOf(row.Row, set.Members);
            const double share = isName && fill.Difference < fewNames && !told ? fill.Share * 0.3 : fill.Share;
            best = std::max(best, share);
            all += share / static_cast<double>(rows[i].size());
        }
        // Records that are of one make can be read in every way in which the example can.
        sum += (best + all) / 2;
        ++count;
        if (isName) {
            weakest = (best + all) / 2;
            set.Named = best;
        }
    }
    if (count == 0)
        return 0;
    auto records = static_cast<double>(set.Members.size());
    // What holds nothing but the name is hardly the whole record.
    const QString record = RawFieldValue(in_.Source, set.OfBusiness.front().Begin, Field::BusinessName, {});
    for (const FoundExample& example : in_.Examples)
        if (!set.Flat && example.What.Business == 0 && IsExample(Field::BusinessName, record, example.Text))
            records *= 0.3;
    const bool isAside = in_.Aside[static_cast<size_t>(set.OfBusiness.front().Begin)];
    for (const RecordSpan member : set.Members)
        records -= !isAside && in_.Aside[static_cast<size_t>(member.Begin)] ? 2 : 0;
    const double filled = records * weakest;
    return filled < 0.5 || weakest < 0.3
               ? 0
               : filled * weakest * (sum / count) * Alike(set) * (1 + in_.Witness.Agreement(set.Members));
}

} // namespace Brindle
