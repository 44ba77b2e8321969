#include "toolkit/WorkingText.h"

#include <algorithm>
#include <utility>

namespace Brindle {

namespace {

constexpr size_t firstMemories = 32; // a power of two, as every later number is

size_t HashOf(const char16_t* text) {
    // The middle bits: the lowest ones repeat with the alignment, the highest are those of the program's place.
    return static_cast<size_t>((reinterpret_cast<quintptr>(text) * quint64{0x9E3779B97F4A7C15}) >> 24);
}

} // namespace

WorkingText::WorkingText(QStringView page) : page_(page), memories_(firstMemories) {}

WorkingText::Memory& WorkingText::MemoryOf(const Marker& marker) {
    const char16_t* const text = marker.Text().utf16();
    for (;;) {
        const size_t mask = memories_.size() - 1;
        size_t at = HashOf(text) & mask;
        while (memories_[at].Marker && memories_[at].Marker != text)
            at = (at + 1) & mask;
        Memory& memory = memories_[at];
        if (memory.Marker)
            return memory;
        if (2 * (remembered_ + 1) <= memories_.size()) {
            ++remembered_;
            memory.Marker = text;
            return memory;
        }
        Grow();
    }
}

void WorkingText::Grow() {
    const std::vector<Memory> old = std::exchange(memories_, std::vector<Memory>(memories_.size() * 2));
    const size_t mask = memories_.size() - 1;
    for (const Memory& memory : old) {
        if (!memory.Marker)
            continue;
        size_t at = HashOf(memory.Marker) & mask;
        while (memories_[at].Marker)
            at = (at + 1) & mask;
        memories_[at] = memory;
    }
}

qsizetype WorkingText::FoldedPlace(const Marker& marker, Memory& memory) {
    if (!Holds(memory.Folded))
        memory.Folded = {cursor_, marker.FindFolded(page_, cursor_)};
    return memory.Folded.At;
}

qsizetype WorkingText::Find(const Marker& marker) {
    if (marker.IsEmpty())
        return -1;
    Memory& memory = MemoryOf(marker);
    if (!Holds(memory.Exact)) {
        // An occurrence as it stands is one in any case too, and a cut mostly follows the test: one search for both.
        const qsizetype folded = FoldedPlace(marker, memory);
        memory.Exact = {cursor_, folded < 0 ? -1 : marker.FindExact(page_, folded)};
    }
    return memory.Exact.At;
}

qsizetype WorkingText::FindFolded(const Marker& marker) {
    return marker.IsEmpty() ? -1 : FoldedPlace(marker, MemoryOf(marker));
}

bool WorkingText::Belongs(const Marker& marker, const Marker& nextListing) {
    const qsizetype at = Find(marker);
    if (at < 0)
        return false;
    const qsizetype next = Find(nextListing);
    return next < 0 || next > at;
}

template <typename FindBegin, typename FindEnd>
QStringView WorkingText::Cut(FindBegin findBegin, qsizetype beginLength, FindEnd findEnd, qsizetype skip) {
    const qsizetype begin = findBegin();
    if (begin < 0)
        return {};
    cursor_ = std::clamp<qsizetype>(begin + beginLength + skip, cursor_, page_.size());
    const qsizetype start = cursor_;
    const qsizetype end = findEnd();
    if (end < 0) {
        // An absent end counts as position 0, one before the first character, and the skip is added to that.
        cursor_ = std::clamp<qsizetype>(start + skip - 1, start, page_.size());
        return {};
    }
    cursor_ = std::clamp<qsizetype>(end + skip, start, page_.size());
    return page_.sliced(start, end - start);
}

QStringView WorkingText::TakeBetween(const Marker& begin, const Marker& end, qsizetype skip) {
    return Cut([&] { return FindFolded(begin); }, begin.Length(), [&] { return FindFolded(end); }, skip);
}

QStringView WorkingText::CutOnce(QStringView begin, QStringView end, qsizetype skip) {
    const Marker first(begin);
    const Marker second(end);
    return Cut([&] { return first.FindFolded(page_, cursor_); }, first.Length(),
               [&] { return second.FindFolded(page_, cursor_); }, skip);
}

} // namespace Brindle
