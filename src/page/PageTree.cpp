#include "page/PageTree.h"

#include "page/HtmlParser.h"

#include <utility>

namespace Brindle {

PageTree::PageTree(QString html, const PageBounds& bounds) {
    ParseHtml(std::move(html), bounds, *this);
}

int PageTree::NameIdOf(QStringView name) const {
    for (size_t i = 0; i < names_.size(); ++i)
        if (names_[i] == name)
            return static_cast<int>(i);
    return -1;
}

std::span<const PageAttribute> PageTree::Attributes(NodeIndex node) const {
    const Node& made = nodes_[At(node)];
    if (made.Kind != NodeKind::Element)
        return {};
    return std::span(attributes_).subspan(made.First, made.Count);
}

QStringView PageTree::Attribute(NodeIndex node, QStringView name) const {
    for (const PageAttribute& attribute : Attributes(node))
        if (attribute.Name == name)
            return attribute.Value;
    return {};
}

QStringView PageTree::Text(NodeIndex node) const {
    const Node& made = nodes_[At(node)];
    if (made.Kind == NodeKind::Element)
        return {};
    return QStringView(characters_).sliced(made.First, made.Count);
}

} // namespace Brindle
