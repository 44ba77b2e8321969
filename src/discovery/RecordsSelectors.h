#pragma once

#include "discovery/RecordsLists.h"

#include <QString>

#include <vector>

namespace Brindle {

/// A CSS selector of these elements: few, sturdy classes that the elements have in common, with what stands around them
/// where those alone select others, too. The one that comes nearest; empty when nothing holds for them.
QString SelectorOfElements(const PageTree& page, const std::vector<NodeIndex>& elements);

/// A selector that finds one element in each record: `elements` by record, `noNode` where there is none.
QString SelectorWithin(const PageTree& page, const RecordList& list, const std::vector<NodeIndex>& elements);

} // namespace Brindle
