#include "page/PageTree.h"

#include "page/HtmlTree.h"

#include <QHash>

#include <cstring>
#include <limits>

namespace Brindle {

// Makes the tree from the parser's in one walk.
class PageTree::Builder {
public:
    Builder(PageTree& tree, const HtmlTree& source) : tree_(tree), source_(source) {}

    void Build() {
        Walk(
            source_.Root(), [this](const GumboNode* node, int) { return Enter(node); },
            [this](const GumboNode*, int) { Leave(); });
        // Only now do the characters stay where they are.
        const QStringView all(tree_.characters_);
        tree_.attributes_.reserve(pending_.size());
        for (const Pending& attribute : pending_)
            tree_.attributes_.push_back(
                {all.sliced(attribute.Name, attribute.NameLength), all.sliced(attribute.Value, attribute.ValueLength)});
    }

private:
    struct Pending {
        qsizetype Name;
        qsizetype NameLength;
        qsizetype Value;
        qsizetype ValueLength;
    };

    bool Enter(const GumboNode* node) {
        if (Brindle::IsText(node)) {
            AddText(node, NodeKind::Text);
            return false;
        }
        if (node->type == GUMBO_NODE_COMMENT) {
            if (std::strcmp(node->v.text.text, flushComment) != 0)
                AddText(node, NodeKind::Comment);
            return false;
        }
        if (!ChildrenOf(node))
            return false;
        const GumboElement& element = node->v.element;
        const NodeIndex index = Append(NodeKind::Element);
        Node& made = tree_.nodes_.back();
        made.Space = element.tag_namespace == GUMBO_NAMESPACE_SVG      ? NodeSpace::Svg
                     : element.tag_namespace == GUMBO_NAMESPACE_MATHML ? NodeSpace::MathMl
                                                                       : NodeSpace::Html;
        made.NameId = IdOfName(NameOf(element));
        made.First = static_cast<quint32>(pending_.size());
        for (unsigned i = 0; i < element.attributes.length; ++i)
            AddAttribute(*static_cast<const GumboAttribute*>(element.attributes.data[i]));
        made.Count = static_cast<quint32>(pending_.size()) - made.First;
        open_.push_back(index);
        NoteLandmarks(index);
        return true;
    }

    void Leave() {
        tree_.nodes_[At(open_.back())].End = tree_.Count();
        open_.pop_back();
    }

    NodeIndex Append(NodeKind kind) {
        const NodeIndex index = tree_.Count();
        tree_.nodes_.push_back({.Parent = open_.empty() ? noNode : open_.back(), .End = index + 1, .Kind = kind});
        return index;
    }

    void AddText(const GumboNode* node, NodeKind kind) {
        Append(kind);
        Node& made = tree_.nodes_.back();
        made.First = static_cast<quint32>(tree_.characters_.size());
        AddCharacters(node->v.text.text);
        made.Count = static_cast<quint32>(tree_.characters_.size()) - made.First;
    }

    void AddCharacters(const char* utf8) { tree_.characters_ += source_.Text(QString::fromUtf8(utf8)); }

    void AddAttribute(const GumboAttribute& attribute) {
        if (std::strcmp(attribute.name, aliasAttribute) == 0)
            return;
        Pending made{};
        made.Name = tree_.characters_.size();
        switch (attribute.attr_namespace) {
        case GUMBO_ATTR_NAMESPACE_XLINK:
            tree_.characters_ += QLatin1String("xlink:");
            break;
        case GUMBO_ATTR_NAMESPACE_XML:
            tree_.characters_ += QLatin1String("xml:");
            break;
        case GUMBO_ATTR_NAMESPACE_XMLNS:
            if (std::strcmp(attribute.name, "xmlns") != 0)
                tree_.characters_ += QLatin1String("xmlns:");
            break;
        case GUMBO_ATTR_NAMESPACE_NONE:
            break;
        }
        AddCharacters(attribute.name);
        made.Value = tree_.characters_.size();
        made.NameLength = made.Value - made.Name;
        AddCharacters(attribute.value);
        made.ValueLength = tree_.characters_.size() - made.Value;
        pending_.push_back(made);
    }

    quint16 IdOfName(const QByteArray& name) {
        const auto known = ids_.constFind(name);
        if (known != ids_.cend())
            return *known;
        // A page with more names than numbers: the last number stands for the rest, by the first such name.
        if (tree_.names_.size() > std::numeric_limits<quint16>::max())
            return std::numeric_limits<quint16>::max();
        const auto id = static_cast<quint16>(tree_.names_.size());
        tree_.names_.push_back(source_.Text(QString::fromUtf8(name)));
        ids_.insert(name, id);
        return id;
    }

    void NoteLandmarks(NodeIndex index) {
        if (open_.size() == 1)
            tree_.root_ = index;
        else if (open_.size() == 2 && tree_.head_ == noNode && tree_.Is(index, u"head"))
            tree_.head_ = index;
        else if (open_.size() == 2 && tree_.body_ == noNode &&
                 (tree_.Is(index, u"body") || tree_.Is(index, u"frameset")))
            tree_.body_ = index;
    }

    PageTree& tree_;
    const HtmlTree& source_;
    std::vector<NodeIndex> open_;
    std::vector<Pending> pending_;
    QHash<QByteArray, quint16> ids_;
};

PageTree::PageTree(const QString& html, const PageBounds& bounds) {
    Builder(*this, HtmlTree(html, bounds)).Build();
}

QStringView PageTree::Name(NodeIndex node) const {
    const Node& made = nodes_[At(node)];
    return made.Kind == NodeKind::Element ? QStringView(names_[made.NameId]) : QStringView();
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
