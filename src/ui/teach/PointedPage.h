#pragma once

#include "core/EmbeddedBrowser.h"
#include "core/PagePointing.h"
#include "page/PageTree.h"

#include <memory>
#include <vector>

namespace Brindle {

/// A page that is shown, as a tree, and which of its elements is which of those that can be pointed at. A browser that
/// cannot be pointed at gives the tree alone.
class PointedPage {
public:
    /// Reads the page; waits for it while messages are handled. Throws `Failure` when it is beyond what is read.
    explicit PointedPage(EmbeddedBrowser& browser);

    /// Null when there is no page.
    const std::shared_ptr<const PageTree>& Tree() const { return tree_; }
    /// The number of an element to point at; -1: it has none.
    int NumberOf(NodeIndex node) const;
    /// The element of a number; `noNode` for none.
    NodeIndex NodeOf(int number) const;
    /// The numbers of the outermost elements of a run of nodes, [begin, end).
    std::vector<int> NumbersWithin(NodeIndex begin, NodeIndex end) const;

private:
    std::shared_ptr<const PageTree> tree_;
    std::vector<int> numbers_;     // by node
    std::vector<NodeIndex> nodes_; // by number
};

} // namespace Brindle
