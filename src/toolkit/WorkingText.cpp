#include "toolkit/WorkingText.h"

#include <algorithm>

namespace Brindle {

WorkingText::WorkingText(QStringView page) : page_(page), memories_(static_cast<size_t>(Marker::Count()) * 2) {}

qsizetype WorkingText::Remembered(const Marker& marker, Search kind) {
    const size_t slot = static_cast<size_t>(marker.Number()) * 2 + static_cast<size_t>(kind);
    if (slot >= memories_.size()) // a marker made after this working text
        memories_.resize(slot + 2);
    const Memory memory = memories_[slot];
    const bool holds = memory.From >= 0 && cursor_ >= memory.From && (memory.At < 0 || cursor_ <= memory.At);
    if (!holds) {
        qsizetype at = 0;
        if (kind == Search::Folded) {
            at = marker.FindFolded(page_, cursor_);
        } else {
            // An occurrence as it stands is one in any case too, and a cut mostly follows the test: one search for
            // both.
            const qsizetype folded = Remembered(marker, Search::Folded);
            at = folded < 0 ? -1 : marker.FindExact(page_, folded);
        }
        // Only now: the memories may have moved.
        memories_[slot] = {cursor_, at};
        return at;
    }
    return memory.At;
}

qsizetype WorkingText::Find(const Marker& marker) {
    return Remembered(marker, Search::Exact);
}

qsizetype WorkingText::FindFolded(const Marker& marker) {
    return Remembered(marker, Search::Folded);
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

QStringView WorkingText::TakeBetween(QStringView begin, QStringView end, qsizetype skip) {
    const Needle first(begin);
    const Needle second(end);
    return Cut([&] { return first.FindFolded(page_, cursor_); }, first.Length(),
               [&] { return second.FindFolded(page_, cursor_); }, skip);
}

} // namespace Brindle
