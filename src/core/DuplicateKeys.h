#pragma once

#include <QHash>
#include <QStringView>

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
        friend size_t qHash(const Digest& digest, size_t seed) noexcept {
            return static_cast<size_t>(digest.Low ^ seed);
        }
    };
    static Digest DigestOf(QStringView key);

    QHash<Digest, quint32> counts_;
    qsizetype count_ = 0;
};

} // namespace Brindle
