#include "page/HtmlSerializer.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// Engines put elements that lie deeper than this beside their parent instead of into it; its texts stay.
constexpr size_t deepest = 512;

bool IsVoid(QStringView name) {
    static constexpr QStringView names[] = {u"area",  u"base",  u"basefont", u"bgsound", u"br",    u"col",    u"embed",
                                            u"frame", u"hr",    u"image",    u"img",     u"input", u"keygen", u"link",
                                            u"meta",  u"param", u"source",   u"track",   u"wbr"};
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

bool HoldsRawTextAlways(QStringView name) {
    static constexpr QStringView names[] = {u"style",     u"script",  u"xmp",     u"iframe",
                                            u"plaintext", u"noembed", u"noframes"};
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

class Serializer {
public:
    explicit Serializer(const PageTree& tree) : tree_(tree), traits_(static_cast<size_t>(tree.NameCount())) {
        for (NodeIndex node = 0, known = 0; node < tree.Count() && known < tree.NameCount(); ++node) {
            if (!tree.IsElement(node))
                continue;
            Traits& traits = traits_[static_cast<size_t>(tree.NameId(node))];
            if (std::exchange(traits.Known, true))
                continue;
            ++known;
            traits.Void = IsVoid(tree.Name(node));
            traits.Raw = HoldsRawTextAlways(tree.Name(node));
            traits.Noscript = tree.Name(node) == u"noscript";
        }
    }

    // Writes a node and all within it. `begins` and `ends` are called for each element before and behind it.
    template <typename Function>
    void Write(NodeIndex first, Function at) {
        for (NodeIndex up = first; up != noNode; up = tree_.Parent(up))
            ++outside_;
        const NodeIndex end = tree_.End(first);
        for (NodeIndex node = first; node < end; ++node) {
            while (!open_.empty() && tree_.End(open_.back()) <= node)
                Leave(at);
            switch (tree_.Kind(node)) {
            case NodeKind::Element:
                at(node, true);
                WriteStartTag(node);
                break;
            case NodeKind::Text:
                if (open_.empty() || !IsFlattened(open_.size() - 1)) // otherwise it is written already
                    WriteText(node);
                break;
            case NodeKind::Comment:
                Out += u"<!--";
                Out += tree_.Text(node);
                Out += u"-->";
            }
        }
        while (!open_.empty())
            Leave(at);
    }

    QString Out;

private:
    struct Traits {
        bool Known = false;
        bool Void = false;
        bool Raw = false;
        bool Noscript = false;
    };

    const Traits& TraitsOf(NodeIndex element) const { return traits_[static_cast<size_t>(tree_.NameId(element))]; }
    // Of an element at this depth below the first one.
    bool IsFlattened(size_t depth) const { return depth + outside_ > deepest; }

    template <typename Function>
    void Leave(Function at) {
        const NodeIndex node = open_.back();
        open_.pop_back();
        templates_ -= tree_.IsTemplate(node) ? 1 : 0;
        if (!IsFlattened(open_.size()))
            WriteEndTag(node);
        at(node, false);
    }

    void WriteStartTag(NodeIndex node) {
        Out += u'<';
        Out += tree_.Name(node);
        for (const PageAttribute& attribute : tree_.Attributes(node)) {
            Out += u' ';
            Out += attribute.Name;
            Out += u"=\"";
            WriteEscaped<true>(attribute.Value);
            Out += u'"';
        }
        Out += u'>';
        if (tree_.Space(node) == NodeSpace::Html && TraitsOf(node).Void)
            return; // no parser puts anything into it
        templates_ += tree_.IsTemplate(node) ? 1 : 0;
        if (IsFlattened(open_.size())) {
            for (NodeIndex child = tree_.FirstChild(node); child != noNode; child = tree_.NextSibling(child))
                if (tree_.IsText(child))
                    WriteText(child);
            WriteEndTag(node);
        }
        open_.push_back(node);
    }

    void WriteText(NodeIndex node) {
        const NodeIndex parent = tree_.Parent(node);
        if (parent != noNode && HoldsRaw(parent))
            Out += tree_.Text(node);
        else
            WriteEscaped<false>(tree_.Text(node));
    }

    void WriteEndTag(NodeIndex node) {
        Out += u"</";
        Out += tree_.Name(node);
        Out += u'>';
    }

    template <bool inAttribute>
    static QStringView EscapeOf(char16_t c) {
        switch (c) {
        case u'&':
            return u"&amp;";
        case u'\u00a0':
            return u"&nbsp;";
        case u'"':
            return inAttribute ? QStringView(u"&quot;") : QStringView();
        case u'<':
            return inAttribute ? QStringView() : QStringView(u"&lt;");
        case u'>':
            return inAttribute ? QStringView() : QStringView(u"&gt;");
        default:
            return {};
        }
    }

    template <bool inAttribute>
    void WriteEscaped(QStringView text) {
        const char16_t* const end = text.utf16() + text.size();
        const char16_t* done = text.utf16();
        for (const char16_t* c = done; c != end; ++c) {
            if (*c > u'\u00a0' || (*c > u'>' && *c < u'\u00a0'))
                continue;
            const QStringView escape = EscapeOf<inAttribute>(*c);
            if (escape.isEmpty())
                continue;
            Out += QStringView(done, c);
            Out += escape;
            done = c + 1;
        }
        Out += QStringView(done, end);
    }

    bool HoldsRaw(NodeIndex parent) const {
        if (tree_.Space(parent) != NodeSpace::Html)
            return false;
        const Traits& traits = TraitsOf(parent);
        // No script runs in a template.
        return traits.Raw || (traits.Noscript && templates_ == 0);
    }

    const PageTree& tree_;
    std::vector<Traits> traits_; // by name
    std::vector<NodeIndex> open_;
    size_t outside_ = 0;
    int templates_ = 0; // that are open
};

} // namespace

QString OuterHtml(const PageTree& tree, NodeIndex node) {
    Serializer serializer(tree);
    serializer.Write(node, [](NodeIndex, bool) {});
    return std::move(serializer.Out);
}

DocumentPieces SerializedDocument(const PageTree& tree) {
    DocumentPieces pieces;
    if (tree.Root() == noNode)
        return pieces;
    Serializer serializer(tree);
    serializer.Write(tree.Root(), [&](NodeIndex node, bool begins) {
        if (node == tree.Body())
            (begins ? pieces.BeforeBody : pieces.Body) = std::exchange(serializer.Out, {});
    });
    (tree.Body() == noNode ? pieces.BeforeBody : pieces.BehindBody) = std::move(serializer.Out);
    return pieces;
}

} // namespace Brindle
