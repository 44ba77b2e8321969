#pragma once

#include "discovery/RecordsReader.h"
#include "discovery/StructuredData.h"

namespace Brindle {

/// What a page says of itself and what its lists look like, brought together: each adds to the other. Structured data
/// that names the records of a list is a witness for it; alone it makes records where it lists businesses that can be
/// reached.
class RecordsMerge {
public:
    RecordsMerge(const PageTree& page, std::vector<StructuredRecord> structured);

    /// The share of a list's records that structured data speaks of.
    double WitnessFor(RecordsReading& list) const;
    /// Adds what structured data says of the list's records, of a list that `WitnessFor` was asked about; a record that
    /// holds several businesses becomes several.
    void AddTo(RecordsReading& list) const;
    /// The records of structured data alone; empty when they are not sure enough.
    std::vector<PageRecord> Alone() const;
    /// "microdata" and so on, of most of the records.
    QString Source() const;

private:
    std::vector<QVarLengthArray<size_t, 1>> Matches(const RecordsReading& list) const;

    const PageTree& page_;
    std::vector<StructuredRecord> structured_;
    std::vector<QString> names_; // of these, folded
};

} // namespace Brindle
