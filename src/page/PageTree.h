#pragma once

#include "page/PageBounds.h"

#include <QString>
#include <QStringView>

#include <span>
#include <vector>

namespace Brindle {

/// A node by its place: nodes are numbered in document order from 0, so what lies within a node is the run of numbers
/// behind it.
using NodeIndex = qint32;
inline constexpr NodeIndex noNode = -1;

enum class NodeKind : quint8 { Element, Text, Comment };
enum class NodeSpace : quint8 { Html, Svg, MathMl };

struct PageAttribute {
    QStringView Name; ///< lower case for HTML; prefixed ("xlink:href") where it has a namespace
    QStringView Value;
};

/// A page's tree of elements, texts and comments, parsed as HTML (section 13.2). It owns all its texts, which are good
/// as long as the tree. Nothing tells which parser made it. Lists over the whole tree, indexed by node, are the way to
/// note something about each node: reading is one pass from 0 to `Count()`.
class PageTree {
public:
    /// Throws `Failure` with one line when the page is beyond the bounds. A page that is moved in is let go of early.
    explicit PageTree(QString html, const PageBounds& bounds = {});

    NodeIndex Count() const { return static_cast<NodeIndex>(nodes_.size()); }
    /// The html element; `noNode` for an empty tree, which no page gives.
    NodeIndex Root() const { return root_; }
    /// The head element; `noNode` when there is none.
    NodeIndex Head() const { return head_; }
    /// The body element, or the frameset of a page that has one in its place; `noNode` when there is neither.
    NodeIndex Body() const { return body_; }

    NodeKind Kind(NodeIndex node) const { return nodes_[At(node)].Kind; }
    bool IsElement(NodeIndex node) const { return Kind(node) == NodeKind::Element; }
    bool IsText(NodeIndex node) const { return Kind(node) == NodeKind::Text; }
    NodeSpace Space(NodeIndex node) const { return nodes_[At(node)].Space; }
    /// An HTML element of this name, which is given in lower case. False for other nodes.
    bool Is(NodeIndex node, QStringView name) const {
        return IsElement(node) && Space(node) == NodeSpace::Html && Name(node) == name;
    }
    /// An element's name, in lower case for HTML; empty for other nodes.
    QStringView Name(NodeIndex node) const {
        const Node& made = nodes_[At(node)];
        return made.Kind == NodeKind::Element ? QStringView(names_[made.NameId]) : QStringView();
    }
    /// Equal for elements of one name and different for others, 0 to `NameCount()` - 1; -1 for other nodes.
    int NameId(NodeIndex node) const { return IsElement(node) ? nodes_[At(node)].NameId : -1; }
    int NameCount() const { return static_cast<int>(names_.size()); }
    /// The number of a name; -1 when no element of the page has it.
    int NameIdOf(QStringView name) const;

    /// `noNode` for the outermost nodes.
    NodeIndex Parent(NodeIndex node) const { return nodes_[At(node)].Parent; }
    /// One past the last node within this one; `node + 1` when there is none.
    NodeIndex End(NodeIndex node) const { return nodes_[At(node)].End; }
    NodeIndex FirstChild(NodeIndex node) const { return End(node) > node + 1 ? node + 1 : noNode; }
    NodeIndex NextSibling(NodeIndex node) const {
        const NodeIndex parent = Parent(node);
        const NodeIndex next = End(node);
        return next < (parent == noNode ? Count() : End(parent)) ? next : noNode;
    }
    /// Whether `inner` is `outer` or lies within it.
    bool Contains(NodeIndex outer, NodeIndex inner) const { return inner >= outer && inner < End(outer); }

    /// A template's contents lie within it like children, but are no part of the document.
    bool IsTemplate(NodeIndex node) const { return Is(node, u"template"); }

    /// An element's attributes in the page's order; none for other nodes.
    std::span<const PageAttribute> Attributes(NodeIndex node) const {
        const Node& made = nodes_[At(node)];
        return made.Kind == NodeKind::Element ? std::span(attributes_).subspan(made.First, made.Count)
                                              : std::span<const PageAttribute>();
    }
    /// An attribute's value; a null view when the element has none of that name (an empty value is not null).
    QStringView Attribute(NodeIndex node, QStringView name) const;
    bool HasAttribute(NodeIndex node, QStringView name) const { return !Attribute(node, name).isNull(); }
    /// Whether any element of the page has an attribute of this name.
    bool NamesAttribute(QStringView name) const;

    /// The characters of a text or comment; empty for elements.
    QStringView Text(NodeIndex node) const;

private:
    struct Node {
        NodeIndex Parent = noNode;
        NodeIndex End = 0;
        quint32 First = 0; // of an element's attributes; of a text's characters
        quint32 Count = 0;
        quint16 NameId = 0;
        NodeKind Kind = NodeKind::Element;
        NodeSpace Space = NodeSpace::Html;
    };
    friend class PageTreeBuilder;

    static size_t At(NodeIndex node) { return static_cast<size_t>(node); }

    std::vector<Node> nodes_;
    std::vector<PageAttribute> attributes_;
    std::vector<QString> names_;
    std::vector<QString> attributeNames_;
    QString characters_; // of all texts and attribute values
    NodeIndex root_ = noNode;
    NodeIndex head_ = noNode;
    NodeIndex body_ = noNode;
};

} // namespace Brindle
