#include "toolkit/Marker.h"

#include <bit>
#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define BRINDLE_SSE2 1
#endif

namespace Brindle {

template <bool Fold>
bool Marker::MatchesAt(const char16_t* at) const {
    if constexpr (!Fold)
        return std::memcmp(at, text_.utf16(), static_cast<size_t>(text_.size()) * sizeof(char16_t)) == 0;
    const char16_t* const wanted = text_.utf16();
    for (qsizetype i = 0; i < text_.size(); ++i)
        if (Ascii::Lower(at[i]) != Ascii::Lower(wanted[i]))
            return false;
    return true;
}

template <bool Fold>
qsizetype Marker::Find(QStringView haystack, qsizetype from) const {
    const qsizetype length = text_.size();
    if (length == 0 || haystack.size() - from < length)
        return -1;
    const char16_t* const text = haystack.utf16();
    const qsizetype last = haystack.size() - length; // the last position at which the needle could stand
    const auto wanted = [this](qsizetype anchor) {
        const char16_t c = text_.utf16()[anchor];
        return Fold ? Ascii::Lower(c) : c;
    };
    const char16_t c1 = wanted(anchor1_);
    const char16_t c2 = wanted(anchor2_);
    qsizetype at = from;

#ifdef BRINDLE_SSE2
    // x | 0x20 equals a lower-case letter only for that letter in either case, so one OR folds the case.
    const auto caseBit = [](char16_t c) { return _mm_set1_epi16(Fold && Ascii::IsLower(c) ? 0x20 : 0); };
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
        if ((Fold ? Ascii::Lower(x1) : x1) == c1 && (Fold ? Ascii::Lower(x2) : x2) == c2 && MatchesAt<Fold>(text + at))
            return at;
    }
    return -1;
}

qsizetype Marker::FindExact(QStringView haystack, qsizetype from) const {
    return Find<false>(haystack, from);
}

qsizetype Marker::FindFolded(QStringView haystack, qsizetype from) const {
    return Find<true>(haystack, from);
}

} // namespace Brindle
