#include "page/PageTree.h"

#include "page/HtmlParser.h"

#include <algorithm>
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

QStringView PageTree::Attribute(NodeIndex node, QStringView name) const {
    for (const PageAttribute& attribute : Attributes(node))
        if (attribute.Name.size() == name.size() && attribute.Name.front() == name.front() && attribute.Name == name)
            return attribute.Value;
    return {};
}

bool PageTree::NamesAttribute(QStringView name) const {
    return std::find(attributeNames_.begin(), attributeNames_.end(), name) != attributeNames_.end();
}

QStringView PageTree::Text(NodeIndex node) const {
    const Node& made = nodes_[At(node)];
    if (made.Kind == NodeKind::Element)
        return {};
    return QStringView(characters_).sliced(made.First, made.Count);
}

} // namespace Brindle
