#pragma once

#include "toolkit/Ascii.h"

#include <QString>
#include <QStringView>

#include <string_view>

namespace Brindle {

/// A literal text prepared for being searched for many times, mostly one that stands on a directory's pages. The search
/// looks for the two rarest characters of the literal first, eight text positions at a time, and compares the rest only
/// where both stand. Everything is prepared by the compiler; a `WorkingText` knows a marker by the place of its text.
class Marker {
public:
    constexpr Marker() = default;
    /// The literal as it stands in the source.
    template <size_t N>
    consteval Marker(const char16_t (&literal)[N]) : Marker(QStringView(literal, static_cast<qsizetype>(N) - 1)) {}
    /// `text` must stay where it is as long as the marker, and as any working text that was asked for it.
    constexpr explicit Marker(QStringView text);

    constexpr QStringView Text() const { return text_; }
    constexpr qsizetype Length() const { return text_.size(); }
    constexpr bool IsEmpty() const { return text_.isEmpty(); }

    /// 0-based position of the first occurrence at or after `from`; -1 when there is none. An empty marker is nowhere.
    qsizetype FindExact(QStringView haystack, qsizetype from) const;
    /// The same, A to Z and a to z being equal.
    qsizetype FindFolded(QStringView haystack, qsizetype from) const;

private:
    template <bool Fold>
    qsizetype Find(QStringView haystack, qsizetype from) const;
    template <bool Fold>
    bool MatchesAt(const char16_t* at) const;

    QStringView text_;
    qsizetype anchor1_ = 0; // positions in the literal of its two rarest characters, anchor1_ <= anchor2_
    qsizetype anchor2_ = 0;
};

/// A marker whose text is made at run time, which it owns.
class Needle {
public:
    explicit Needle(QStringView text) : text_(text.toString()), marker_(text_) {}
    Needle(const Needle& other) : Needle(QStringView(other.text_)) {}
    Needle& operator=(const Needle&) = delete;

    qsizetype Length() const { return marker_.Length(); }
    qsizetype FindExact(QStringView haystack, qsizetype from) const { return marker_.FindExact(haystack, from); }
    qsizetype FindFolded(QStringView haystack, qsizetype from) const { return marker_.FindFolded(haystack, from); }

private:
    QString text_;
    Marker marker_;
};

namespace MarkerDetail {

// How often a character stands in the markup of a result page, commonest first. What is not listed is rare.
inline constexpr std::u16string_view commonFirst = u" esatiln\"=/<>rocdpmhuvgfb-.w1_2:0;3k5y&?4978x6";

constexpr int Commonness(char16_t c) {
    const auto at = commonFirst.find(Ascii::Lower(c));
    return at == std::u16string_view::npos ? 0 : static_cast<int>(commonFirst.size() - at);
}

} // namespace MarkerDetail

constexpr Marker::Marker(QStringView text) : text_(text) {
    if (text.isEmpty())
        return;
    const auto commonness = [text](qsizetype i) { return MarkerDetail::Commonness(text.utf16()[i]); };
    qsizetype first = 0;
    for (qsizetype i = 1; i < text.size(); ++i)
        if (commonness(i) < commonness(first))
            first = i;
    qsizetype second = first == 0 ? text.size() - 1 : 0;
    for (qsizetype i = 0; i < text.size(); ++i)
        if (i != first && commonness(i) < commonness(second))
            second = i;
    anchor1_ = first < second ? first : second;
    anchor2_ = first < second ? second : first;
}

} // namespace Brindle
