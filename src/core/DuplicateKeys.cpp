#include "core/DuplicateKeys.h"

#include <QHash>
#include <QRandomGenerator>

#include <algorithm>
#include <utility>

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

// Where a key is, or the free slot where it would be. There is always a free one.
size_t DuplicateKeys::SlotOf(const Digest& digest) const {
    const size_t mask = slots_.size() - 1;
    size_t at = static_cast<size_t>(digest.Low) & mask;
    while (slots_[at].Times > 0 && slots_[at].Key != digest)
        at = (at + 1) & mask;
    return at;
}

void DuplicateKeys::Grow() {
    const std::vector<Slot> before = std::exchange(slots_, std::vector<Slot>(std::max<size_t>(slots_.size() * 2, 64)));
    for (const Slot& slot : before)
        if (slot.Times > 0)
            slots_[SlotOf(slot.Key)] = slot;
}

bool DuplicateKeys::Contains(QStringView key) const {
    return !slots_.empty() && slots_[SlotOf(DigestOf(key))].Times > 0;
}

void DuplicateKeys::Add(QStringView key) {
    if (used_ * 2 >= slots_.size())
        Grow();
    const Digest digest = DigestOf(key);
    Slot& slot = slots_[SlotOf(digest)];
    if (slot.Times == 0) {
        slot.Key = digest;
        ++used_;
    }
    ++slot.Times;
    ++count_;
}

void DuplicateKeys::RemoveOne(QStringView key) {
    if (slots_.empty())
        return;
    size_t hole = SlotOf(DigestOf(key));
    if (slots_[hole].Times == 0)
        return;
    --count_;
    if (--slots_[hole].Times > 0)
        return;
    --used_;
    // What stands behind the hole, and would be looked for from before it, closes it.
    const size_t mask = slots_.size() - 1;
    for (size_t at = (hole + 1) & mask; slots_[at].Times > 0; at = (at + 1) & mask) {
        const size_t home = static_cast<size_t>(slots_[at].Key.Low) & mask;
        if (((at - home) & mask) < ((at - hole) & mask))
            continue;
        slots_[hole] = std::exchange(slots_[at], {});
        hole = at;
    }
}

void DuplicateKeys::Clear() {
    slots_.clear();
    used_ = 0;
    count_ = 0;
}

} // namespace Brindle
