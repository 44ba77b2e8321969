#pragma once

#include "recipes/LearnRows.h"
#include "recipes/SturdySelectors.h"

#include <QHash>

#include <optional>
#include <vector>

namespace Brindle {

/// Finds the list around the examples: which elements of the page are its records.
class RecordFinder {
public:
    RecordFinder(LearnPage& in, RowFinder& rows) : in_(in), rows_(rows) {}

    /// Nothing where no element holds all examples of a business, and others are like it.
    std::optional<RecordSet> Find();
    /// Whether every one of the wider elements holds records, some of them several, and no record lies elsewhere.
    static bool IsGroupOf(const RecordSet& records, const RecordSet& wider);

private:
    bool HasPlaceIn(const FoundExample& example, RecordSpan record) const;
    RecordSpan SpanOf(NodeIndex node) const;
    bool HoldsAll(int business, RecordSpan record) const;
    std::vector<NodeIndex> Together() const;
    std::optional<RecordSet> BestRecords();
    std::optional<RecordSet> OfSeveralMakes();
    std::optional<RecordSet> BestFlatRecords();
    std::vector<CandidateSelector> RowsWithNames(NodeIndex child) const;
    std::optional<RecordSet> BestSelector(NodeIndex element, bool flat, std::vector<CandidateSelector> more = {});
    bool FindBusinesses(RecordSet& set) const;
    QString Surroundings(NodeIndex node);
    double Alike(const RecordSet& set);
    bool AreToldApart(const RecordSet& set, const std::vector<std::vector<RatedRow>>& rows);
    double ScoreOf(RecordSet& set, const std::vector<std::vector<RatedRow>>& rows);
    LearnPage& in_;
    RowFinder& rows_;
    QHash<NodeIndex, QString> names_; // the best selector of elements that hold others
};

} // namespace Brindle
