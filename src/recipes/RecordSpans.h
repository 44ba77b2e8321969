#pragma once

#include "page/Selector.h"

#include <vector>

namespace Brindle {

/// The nodes [Begin, End) of a page that make a record.
struct RecordSpan {
    NodeIndex Begin = noNode;
    NodeIndex End = noNode;
    bool Flat = false; ///< `Begin` is only the first of its elements

    bool operator==(const RecordSpan&) const = default;
};

/// The records of a page, in its order, from the elements that a selector selects: each with all that lies in it, so
/// that those in another one are none; `flat`: with what follows it up to the next one of the same parent, or the
/// parent's end.
std::vector<RecordSpan> RecordSpans(const PageTree& page, const std::vector<NodeIndex>& elements, bool flat);

/// The elements of a selector within a record, in the page's order. In a flat record ":scope" is not the record.
std::vector<NodeIndex> SelectedIn(const SelectorQuery& query, RecordSpan record);

} // namespace Brindle
