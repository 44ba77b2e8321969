#pragma once

#include "core/Lead.h"

#include <QHash>
#include <QString>

#include <vector>

namespace Brindle {

/// Lists of leads made into one. Leads are the same business when they share a details link, or name and phone or name
/// and full address (see `BusinessKeys`) while not both of them have a page of their own in the same directory. The
/// lead that was added last stands for the business, in the place of the first.
class LeadMerger {
public:
    /// Leads are added oldest first.
    void Add(Lead lead);
    const std::vector<Lead>& Leads() const { return leads_; }
    qint64 Duplicates() const { return duplicates_; }

private:
    std::vector<Lead> leads_;
    QHash<QString, size_t> byKey_;
    qint64 duplicates_ = 0;
};

} // namespace Brindle
