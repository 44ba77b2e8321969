#include "ui/teach/PointedPage.h"

namespace Brindle {

PointedPage::PointedPage(EmbeddedBrowser& browser) {
    PagePointing* const pointing = browser.Pointing();
    const PageSnapshot snapshot = pointing ? pointing->TakeSnapshot() : PageSnapshot{browser.DocumentHtml(), {}};
    if (snapshot.Html.isEmpty())
        return;
    tree_ = std::make_shared<const PageTree>(snapshot.Html);
    if (snapshot.Marked.isEmpty())
        return;
    // Attributes make no difference to how a page is parsed, so the nodes of both are the same.
    const PageTree marked(snapshot.Marked);
    if (marked.Count() != tree_->Count())
        return;
    numbers_.assign(static_cast<size_t>(marked.Count()), -1);
    for (NodeIndex node = 0; node < marked.Count(); ++node) {
        bool isNumber = false;
        const int number = marked.Attribute(node, elementNumberAttribute).toInt(&isNumber);
        if (!isNumber || number < 0 || number > marked.Count())
            continue;
        numbers_[static_cast<size_t>(node)] = number;
        if (nodes_.size() <= static_cast<size_t>(number))
            nodes_.resize(static_cast<size_t>(number) + 1, noNode);
        nodes_[static_cast<size_t>(number)] = node;
    }
}

int PointedPage::NumberOf(NodeIndex node) const {
    return node < 0 || static_cast<size_t>(node) >= numbers_.size() ? -1 : numbers_[static_cast<size_t>(node)];
}

NodeIndex PointedPage::NodeOf(int number) const {
    return number < 0 || static_cast<size_t>(number) >= nodes_.size() ? noNode : nodes_[static_cast<size_t>(number)];
}

std::vector<int> PointedPage::NumbersWithin(NodeIndex begin, NodeIndex end) const {
    std::vector<int> numbers;
    for (NodeIndex node = begin; tree_ && node != noNode && node < end && node < tree_->Count();
         node = tree_->End(node))
        if (const int number = NumberOf(node); number >= 0)
            numbers.push_back(number);
    return numbers;
}

} // namespace Brindle
