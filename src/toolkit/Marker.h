#pragma once

#include <QString>
#include <QStringView>

namespace Brindle {

/// A literal text prepared for being searched for many times. The search looks for the two rarest characters of the
/// literal first, eight text positions at a time, and compares the rest only where both stand.
class Needle {
public:
    /// `text`: the literal; upper and lower case of A to Z are kept for exact searches.
    explicit Needle(QStringView text);

    qsizetype Length() const { return text_.size(); }
    const QString& Text() const { return text_; }

    /// 0-based position of the first occurrence at or after `from`; -1 when there is none. An empty needle is nowhere.
    qsizetype FindExact(QStringView haystack, qsizetype from) const;
    /// The same, A to Z and a to z being equal.
    qsizetype FindFolded(QStringView haystack, qsizetype from) const;

private:
    template <bool Fold>
    qsizetype Find(QStringView haystack, qsizetype from) const;
    template <bool Fold>
    bool MatchesAt(const char16_t* at) const;

    QString text_;
    QString folded_;        // A to Z in lower case
    qsizetype anchor1_ = 0; // positions in the literal of its two rarest characters, anchor1_ <= anchor2_
    qsizetype anchor2_ = 0;
};

/// A needle that lives as long as the program, normally a constant of an adapter. Each has a number of its own, so that
/// a `WorkingText` can remember where it last found it.
class Marker : public Needle {
public:
    explicit Marker(QStringView text);
    int Number() const { return number_; }
    /// How many markers the program has.
    static int Count();

private:
    int number_;
};

} // namespace Brindle
