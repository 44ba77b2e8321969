#pragma once

#include "core/LeadList.h"
#include "store/LeadKeeper.h"

#include <span>
#include <vector>

namespace Brindle {

/// Knows for every row of a results list where the store has its lead, so that what the user does to the list is done
/// to the store. Observes the list; the rows that are to go are told beforehand.
class StoredRows : public LeadListObserver {
public:
    /// `keeper`: null when leads are not kept.
    StoredRows(LeadList& leads, const LeadKeeper* keeper);
    ~StoredRows() override;
    StoredRows(const StoredRows&) = delete;
    StoredRows& operator=(const StoredRows&) = delete;

    /// The next row comes from the store itself and is this lead.
    void Expect(const KeptLead& lead) { expected_ = lead; }
    /// Where a row's lead is; nowhere (no harvest) for a row that was not kept.
    const KeptLead& At(qsizetype row) const { return rows_[static_cast<size_t>(row)]; }
    /// To be called before rows (ascending) are removed from the list; all of them: without rows.
    void ToGo(std::span<const qsizetype> rows) { toGo_.assign(rows.begin(), rows.end()); }

    void LeadAppended(qsizetype row) override;
    void LeadsRemoved() override;

private:
    LeadList& leads_;
    const LeadKeeper* keeper_;
    std::vector<KeptLead> rows_;
    std::vector<qsizetype> toGo_;
    KeptLead expected_;
    KeptLead lastSeen_;
};

} // namespace Brindle
