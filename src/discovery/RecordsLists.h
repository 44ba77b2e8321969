#pragma once

#include "discovery/Annotations.h"

#include <vector>

namespace Brindle {

/// The nodes of one record: [Begin, End), an element or several that stand side by side.
struct RecordRange {
    NodeIndex Begin = noNode;
    NodeIndex End = noNode;
};

/// A list of alike things on a page.
struct RecordList {
    std::vector<RecordRange> Records;
    bool Flat = false;  ///< the records have no elements of their own: each begins at a name and ends at the next one
    double Promise = 0; ///< what the signs in the records promise; to compare lists of one page
};

/// What elements look like, as far as it is the same for all records of a list: by name and classes, without digits and
/// without what marks single records (odd, active).
class Signatures {
public:
    explicit Signatures(const PageTree& page);
    quint64 Of(NodeIndex node) const { return full_[static_cast<size_t>(node)]; }
    /// By name alone.
    quint64 Plain(NodeIndex node) const { return plain_[static_cast<size_t>(node)]; }

private:
    std::vector<quint64> full_;
    std::vector<quint64> plain_;
};

/// One number from two, the order counting.
quint64 Mixed(quint64 one, quint64 other);

/// The classes of an element without what is not the same for all records, in their order.
QStringList SturdyClasses(QStringView classes);

/// The lists of a page that could be one of businesses, the most promising first, at most `most`.
std::vector<RecordList> FindLists(const PageAnnotations& page, const Signatures& signatures, size_t most);

/// What the signs in a record are worth.
double WorthOf(const NodeFacts& facts);

} // namespace Brindle
