#pragma once

#include "discovery/RecordsColumns.h"

#include <QHash>

namespace Brindle {

/// Which column bears the records' names, and which links lead to their own pages.
class RecordNames {
public:
    explicit RecordNames(const RecordColumns& columns);

    /// How much the best column looks like one of names; below 2 it is none.
    double Score() const { return score_; }
    const QString& Why() const { return why_; }
    /// The element of a record's name; `noNode` when it has none.
    NodeIndex NodeOf(size_t record) const { return nodes_[record]; }
    const QString& NameOf(size_t record) const { return names_[record]; }
    /// The link to the record's own page; null when it has none.
    const PageLink* DetailsOf(size_t record) const;
    /// Whether all records bear the same name, as the stores of a chain do.
    bool IsOneName() const { return oneName_; }
    /// How many different names and details links there are, as shares of the records that have one.
    double DistinctNames() const;
    double DistinctDetails() const;

private:
    double ScoreOf(const RecordColumn& column) const;
    QString ReadName(size_t record) const;
    void ChooseNames();
    void FindAlike(const RecordColumn& best);
    void ChooseOneName();
    void ChoosePictures();
    void ChooseFirstLines();
    void FindBeginnings();
    void ChooseDetails();
    void CountBadges();
    void CountNumbers();
    qsizetype NumberOf(NodeIndex name) const;
    const TextPiece* BadgeOf(NodeIndex name) const;
    bool LeadsElsewhere(const PageLink& link) const;

    const RecordColumns& columns_;
    double score_ = 0;
    bool oneName_ = false;
    bool numbered_ = false; // the names begin with the numbers of the entries
    QString why_;
    std::vector<NodeIndex> nodes_;
    std::vector<QString> beginnings_; // names without an element, by record; empty: there are none
    std::vector<QString> names_;
    std::vector<NodeIndex> details_; // link nodes
    QHash<QString, int> badges_;     // bare words of what is no part of the names that end with it
};

} // namespace Brindle
