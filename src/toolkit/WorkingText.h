#pragma once

#include "toolkit/Marker.h"

#include <QStringView>

#include <concepts>
#include <vector>

namespace Brindle {

/// The working text of a reader: a cursor into one page. Cuts move the cursor forward and give views into the page;
/// nothing is ever copied. The page must outlive the working text and the views taken from it.
///
/// Presence tests and positions are case-sensitive, cuts are case-blind for A to Z. For every marker the place last
/// found is remembered, so asking again and again for a marker further on, or for one that the page lacks, does not
/// read the page again.
class WorkingText {
public:
    explicit WorkingText(QStringView page);

    /// What is left of the page.
    QStringView Rest() const { return page_.sliced(cursor_); }
    /// The whole page, whatever has been cut from it.
    QStringView Page() const { return page_; }
    bool IsEmpty() const { return cursor_ >= page_.size(); }

    /// Where the cursor stands: 0-based position in the page. It can be handed back to `MoveTo` later.
    qsizetype Position() const { return cursor_; }
    void MoveTo(qsizetype position) { cursor_ = position; }

    /// 0-based position in the page of the first occurrence at or after the cursor, as it stands; -1 when absent.
    qsizetype Find(const Marker& marker);
    /// Whether the marker, as it stands, occurs in what is left.
    bool Contains(const Marker& marker) { return Find(marker) >= 0; }
    /// The same, A to Z and a to z being equal.
    qsizetype FindFolded(const Marker& marker);
    bool ContainsFolded(const Marker& marker) { return FindFolded(marker) >= 0; }

    /// Whether the field that `marker` announces is the listing's own: the marker occurs in what is left, and
    /// `nextListing` either does not occur or occurs after it. Both as they stand.
    bool Belongs(const Marker& marker, const Marker& nextListing);

    /// The marker cut. Finds `begin` and drops everything up to its end and `skip` characters more; the result is
    /// what then stands before `end`, and the text is cut to start `skip` characters into `end`. Without `begin` the
    /// result is empty and nothing moves; without `end` the result is empty and, for a skip of 0, the text starts
    /// after `begin`. An empty `begin` or `end` counts as absent.
    QStringView TakeBetween(const Marker& begin, const Marker& end, qsizetype skip = 0);
    /// The same for texts that are made at run time; nothing is remembered of them.
    QStringView TakeBetween(std::same_as<QStringView> auto begin, std::same_as<QStringView> auto end,
                            qsizetype skip = 0) {
        return CutOnce(begin, end, skip);
    }

    /// The cut with a skip of 0, as tagged files are read.
    QStringView ExtractBetween(QStringView begin, QStringView end) { return CutOnce(begin, end, 0); }

private:
    struct Place {
        qsizetype From = -1; // the search was made from here; -1: never
        qsizetype At = -1;   // and found this; -1: not in the rest of the page
    };
    struct Memory {
        const char16_t* Marker = nullptr; // its text; null: free
        Place Exact;
        Place Folded;
    };
    Memory& MemoryOf(const Marker& marker);
    void Grow();
    bool Holds(const Place& place) const {
        return place.From >= 0 && cursor_ >= place.From && (place.At < 0 || cursor_ <= place.At);
    }
    qsizetype FoldedPlace(const Marker& marker, Memory& memory);
    QStringView CutOnce(QStringView begin, QStringView end, qsizetype skip);
    template <typename FindBegin, typename FindEnd>
    QStringView Cut(FindBegin findBegin, qsizetype beginLength, FindEnd findEnd, qsizetype skip);

    QStringView page_;
    qsizetype cursor_ = 0;
    std::vector<Memory> memories_; // a hash table by the marker's place, never more than half full
    size_t remembered_ = 0;
};

} // namespace Brindle
