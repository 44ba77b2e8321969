#include "store/StoredRows.h"

namespace Brindle {

StoredRows::StoredRows(LeadList& leads, const LeadKeeper* keeper) : leads_(leads), keeper_(keeper) {
    rows_.resize(static_cast<size_t>(leads_.Count()));
    leads_.AddObserver(this);
}

StoredRows::~StoredRows() {
    leads_.RemoveObserver(this);
}

void StoredRows::LeadAppended(qsizetype) {
    if (!expected_.HarvestUid.isEmpty()) {
        rows_.push_back(expected_);
        expected_ = {};
        return;
    }
    // A lead is kept before it is listed, so the last one that was kept is this one, unless it is another row's
    // already.
    KeptLead kept;
    if (keeper_ && (keeper_->Last().HarvestUid != lastSeen_.HarvestUid || keeper_->Last().Seq != lastSeen_.Seq))
        kept = lastSeen_ = keeper_->Last();
    rows_.push_back(kept);
}

void StoredRows::LeadsRemoved() {
    if (leads_.Count() == 0) {
        rows_.clear();
    } else {
        size_t kept = 0;
        auto next = toGo_.begin();
        for (size_t row = 0; row < rows_.size(); ++row) {
            if (next != toGo_.end() && static_cast<size_t>(*next) == row)
                ++next;
            else
                rows_[kept++] = rows_[row];
        }
        rows_.resize(kept);
    }
    toGo_.clear();
}

} // namespace Brindle
