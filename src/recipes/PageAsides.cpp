#include "recipes/PageAsides.h"

#include <algorithm>
#include <iterator>

namespace Brindle {

namespace {

bool IsAside(const PageTree& page, NodeIndex node) {
    if (page.Is(node, u"aside") || page.Is(node, u"nav") || page.Is(node, u"footer"))
        return true;
    const QStringView classes = page.Attribute(node, u"class");
    static constexpr QStringView words[] = {u"sidebar", u"side-bar", u"related", u"similar", u"recently", u"footer"};
    return std::any_of(std::begin(words), std::end(words),
                       [&](QStringView word) { return classes.contains(word, Qt::CaseInsensitive); });
}

} // namespace

std::vector<char> NodesAside(const PageTree& page) {
    std::vector<char> aside(static_cast<size_t>(page.Count()));
    NodeIndex end = 0;
    for (NodeIndex node = 0; node < page.Count(); ++node) {
        if (node >= end && page.IsElement(node) && IsAside(page, node))
            end = page.End(node);
        aside[static_cast<size_t>(node)] = node < end;
    }
    return aside;
}

} // namespace Brindle
