#include "toolkit/Marker.h"

#include <array>
#include <bit>
#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define BRINDLE_SSE2 1
#endif

namespace Brindle {

namespace {

constexpr char16_t FoldAscii(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c | 0x20) : c;
}

constexpr bool IsLowerAscii(char16_t c) {
    return c >= u'a' && c <= u'z';
}

// How often a character stands in the markup of a result page, commonest first. What is not listed is rare.
constexpr std::u16string_view commonFirst = u" esatiln\"=/<>rocdpmhuvgfb-.w1_2:0;3k5y&?4978x6";

constexpr int Commonness(char16_t c) {
    const auto at = commonFirst.find(FoldAscii(c));
    return at == std::u16string_view::npos ? 0 : static_cast<int>(commonFirst.size() - at);
}

int nextMarkerNumber = 0;

} // namespace

Needle::Needle(QStringView text) : text_(text.toString()), folded_(text_) {
    for (QChar& c : folded_)
        c = QChar(FoldAscii(c.unicode()));
    if (text_.isEmpty())
        return;
    const auto commonness = [this](qsizetype i) { return Commonness(folded_[i].unicode()); };
    qsizetype first = 0;
    for (qsizetype i = 1; i < folded_.size(); ++i)
        if (commonness(i) < commonness(first))
            first = i;
    qsizetype second = first == 0 ? folded_.size() - 1 : 0;
    for (qsizetype i = 0; i < folded_.size(); ++i)
        if (i != first && commonness(i) < commonness(second))
            second = i;
    anchor1_ = std::min(first, second);
    anchor2_ = std::max(first, second);
}

template <bool Fold>
bool Needle::MatchesAt(const char16_t* at) const {
    if constexpr (!Fold)
        return std::memcmp(at, text_.utf16(), static_cast<size_t>(text_.size()) * sizeof(char16_t)) == 0;
    const auto* folded = reinterpret_cast<const char16_t*>(folded_.utf16());
    for (qsizetype i = 0; i < folded_.size(); ++i)
        if (FoldAscii(at[i]) != folded[i])
            return false;
    return true;
}

template <bool Fold>
qsizetype Needle::Find(QStringView haystack, qsizetype from) const {
    const qsizetype length = text_.size();
    if (length == 0 || haystack.size() - from < length)
        return -1;
    const char16_t* const text = haystack.utf16();
    const qsizetype last = haystack.size() - length; // the last position at which the needle could stand
    const QString& literal = Fold ? folded_ : text_;
    const char16_t c1 = literal[anchor1_].unicode();
    const char16_t c2 = literal[anchor2_].unicode();
    qsizetype at = from;

#ifdef BRINDLE_SSE2
    // x | 0x20 equals a lower-case letter only for that letter in either case, so one OR folds the case.
    const auto caseBit = [](char16_t c) { return _mm_set1_epi16(Fold && IsLowerAscii(c) ? 0x20 : 0); };
    const __m128i want1 = _mm_set1_epi16(static_cast<short>(c1));
    const __m128i want2 = _mm_set1_epi16(static_cast<short>(c2));
    const __m128i bit1 = caseBit(c1);
    const __m128i bit2 = caseBit(c2);
    const auto hits = [&](qsizetype position) {
        const auto load = [](const char16_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); };
        const __m128i is1 = _mm_cmpeq_epi16(_mm_or_si128(load(text + position + anchor1_), bit1), want1);
        const __m128i is2 = _mm_cmpeq_epi16(_mm_or_si128(load(text + position + anchor2_), bit2), want2);
        return _mm_and_si128(is1, is2);
    };
    for (; at + 15 <= last; at += 16) {
        const __m128i both = _mm_packs_epi16(hits(at), hits(at + 8));
        auto mask = static_cast<unsigned>(_mm_movemask_epi8(both));
        while (mask != 0) {
            const qsizetype candidate = at + std::countr_zero(mask);
            if (MatchesAt<Fold>(text + candidate))
                return candidate;
            mask &= mask - 1;
        }
    }
#endif
    for (; at <= last; ++at) {
        const char16_t x1 = text[at + anchor1_];
        const char16_t x2 = text[at + anchor2_];
        if ((Fold ? FoldAscii(x1) : x1) == c1 && (Fold ? FoldAscii(x2) : x2) == c2 && MatchesAt<Fold>(text + at))
            return at;
    }
    return -1;
}

qsizetype Needle::FindExact(QStringView haystack, qsizetype from) const {
    return Find<false>(haystack, from);
}

qsizetype Needle::FindFolded(QStringView haystack, qsizetype from) const {
    return Find<true>(haystack, from);
}

Marker::Marker(QStringView text) : Needle(text), number_(nextMarkerNumber++) {}

int Marker::Count() {
    return nextMarkerNumber;
}

} // namespace Brindle
