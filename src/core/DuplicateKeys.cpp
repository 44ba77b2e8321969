#include "core/DuplicateKeys.h"

#include <QRandomGenerator>

namespace Brindle {

DuplicateKeys::Digest DuplicateKeys::DigestOf(QStringView key) {
    static const auto seeds = [] {
        struct {
            size_t High = static_cast<size_t>(QRandomGenerator::global()->generate64() | 1U);
            size_t Low = static_cast<size_t>(QRandomGenerator::global()->generate64() | 1U);
        } s;
        return s;
    }();
    const auto bytes = static_cast<size_t>(key.size()) * sizeof(char16_t);
    return {qHashBits(key.utf16(), bytes, seeds.High), qHashBits(key.utf16(), bytes, seeds.Low)};
}

bool DuplicateKeys::Contains(QStringView key) const {
    return counts_.contains(DigestOf(key));
}

void DuplicateKeys::Add(QStringView key) {
    ++counts_[DigestOf(key)];
    ++count_;
}

void DuplicateKeys::RemoveOne(QStringView key) {
    const auto found = counts_.find(DigestOf(key));
    if (found == counts_.end())
        return;
    if (--*found == 0)
        counts_.erase(found);
    --count_;
}

void DuplicateKeys::Clear() {
    counts_.clear();
    count_ = 0;
}

} // namespace Brindle
