#pragma once

#include <QStringView>

#include <vector>

namespace Brindle {

/// The duplicate keys of the listed leads, in the form that `UpperTrimmed` gives. A key can be held several times;
/// equal keys are not told apart. A key is held as a 128-bit digest, so it costs a few dozen bytes whatever its length.
class DuplicateKeys {
public:
    bool Contains(QStringView key) const;
    void Add(QStringView key);
    /// Removes one of the equal keys; nothing happens when it is not held.
    void RemoveOne(QStringView key);
    void Clear();
    qsizetype Count() const { return count_; }

private:
    struct Digest {
        quint64 High;
        quint64 Low;
        bool operator==(const Digest&) const = default;
    };
    struct Slot {
        Digest Key;
        quint32 Times = 0; // 0: free
    };
    static Digest DigestOf(QStringView key);
    size_t SlotOf(const Digest& digest) const;
    void Grow();

    // A table with linear probing, at most half full: a lookup touches one place in memory, which is what counts when
    // there are many keys.
    std::vector<Slot> slots_;
    size_t used_ = 0; // slots that are not free
    qsizetype count_ = 0;
};

} // namespace Brindle
