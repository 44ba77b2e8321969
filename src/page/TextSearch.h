#pragma once

#include "toolkit/Ascii.h"

#include <QString>
#include <QStringView>

#include <algorithm>
#include <utility>
#include <vector>

namespace Brindle {

/// Whether two texts are the same, A to Z and a to z being so.
inline bool IsSameInAnyCase(QStringView a, QStringView b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                              [](QChar x, QChar y) { return Ascii::Lower(x) == Ascii::Lower(y); });
}

/// Finds a text in others, each in one pass over it whatever they are (Knuth, Morris, Pratt).
class TextSearch {
public:
    TextSearch() = default;
    /// `anyCase`: A to Z and a to z are the same.
    TextSearch(QString needle, bool anyCase) : needle_(std::move(needle)), anyCase_(anyCase) {
        fallBack_.resize(static_cast<size_t>(needle_.size()) + 1);
        fallBack_[0] = -1;
        for (qsizetype i = 0; i < needle_.size(); ++i) {
            qsizetype known = fallBack_[static_cast<size_t>(i)];
            while (known >= 0 && !Same(needle_[known], needle_[i]))
                known = fallBack_[static_cast<size_t>(known)];
            fallBack_[static_cast<size_t>(i) + 1] = known + 1;
        }
    }

    qsizetype Length() const { return needle_.size(); }

    bool Equals(QStringView text) const {
        return text.size() == needle_.size() &&
               std::equal(text.begin(), text.end(), needle_.begin(), [this](QChar a, QChar b) { return Same(a, b); });
    }
    bool Begins(QStringView text) const { return text.size() >= Length() && Equals(text.first(Length())); }
    bool Ends(QStringView text) const { return text.size() >= Length() && Equals(text.last(Length())); }
    bool IsIn(QStringView text) const {
        return !ForEach(text, [](qsizetype) { return false; });
    }
    /// Calls `found` with each place, overlapping ones too, until it says no; whether it never did.
    template <typename Found>
    bool ForEach(QStringView text, Found found) const {
        qsizetype known = 0;
        for (qsizetype i = 0; i < text.size(); ++i) {
            while (known >= 0 && (known == Length() || !Same(needle_[known], text[i])))
                known = fallBack_[static_cast<size_t>(known)];
            if (++known == Length() && !found(i + 1 - Length()))
                return false;
        }
        return true;
    }

private:
    bool Same(QChar a, QChar b) const { return a == b || (anyCase_ && Ascii::Lower(a) == Ascii::Lower(b)); }

    QString needle_;
    bool anyCase_ = false;
    std::vector<qsizetype> fallBack_;
};

} // namespace Brindle
