#include "export/MergeLeads.h"

#include "core/BusinessKey.h"

#include <QUrl>

namespace Brindle {

namespace {

// Whether one directory has a page for each of the two.
bool AreListedApart(const Lead& one, const Lead& other) {
    if (one.DetailsLink.isEmpty() || other.DetailsLink.isEmpty())
        return false;
    return QUrl(one.DetailsLink).host() == QUrl(other.DetailsLink).host();
}

} // namespace

void LeadMerger::Add(Lead lead) {
    const QStringList keys = BusinessKeys(lead);
    size_t index = leads_.size();
    for (qsizetype i = 0; i < keys.size() && index == leads_.size(); ++i) {
        const auto known = byKey_.constFind(keys[i]);
        const bool isLink = i == 0 && !lead.DetailsLink.isEmpty();
        if (known != byKey_.cend() && (isLink || !AreListedApart(lead, leads_[*known])))
            index = *known;
    }
    if (index == leads_.size()) {
        leads_.push_back(std::move(lead));
    } else {
        leads_[index] = std::move(lead);
        ++duplicates_;
    }
    for (const QString& key : keys)
        byKey_.insert(key, index);
}

} // namespace Brindle
