#include "page/HtmlDocument.h"

#include "page/HtmlSerializer.h"
#include "page/InnerText.h"
#include "page/MarkupFormText.h"

#include <utility>

namespace Brindle {

namespace {

// Links within links beyond this have no text of their own.
constexpr size_t deepestLink = 8;

// The innermost ends of elements that are open in a walk over a tree.
class OpenEnds {
public:
    void Add(NodeIndex end) { ends_.push_back(end); }
    void LeaveUpTo(NodeIndex node) {
        while (!ends_.empty() && ends_.back() <= node)
            ends_.pop_back();
    }
    size_t Count() const { return ends_.size(); }

private:
    std::vector<NodeIndex> ends_;
};

bool IsLink(const PageTree& tree, NodeIndex node) {
    return (tree.Is(node, u"a") || tree.Is(node, u"area")) && tree.HasAttribute(node, u"href");
}

} // namespace

HtmlDocument::HtmlDocument(const QString& html, const PageBounds& bounds) {
    const PageTree tree(html, bounds);
    DocumentPieces pieces = SerializedDocument(tree);
    beforeBody_ = std::move(pieces.BeforeBody);
    body_ = std::move(pieces.Body);
    behindBody_ = std::move(pieces.BehindBody);
    Gather(tree);
}

void HtmlDocument::Gather(const PageTree& tree) {
    const TextReader reader(tree);
    OpenEnds links;
    OpenEnds hidden;
    for (NodeIndex node = 0; node < tree.Count(); ++node) {
        if (!tree.IsElement(node))
            continue;
        // The contents of a template are no part of the document.
        if (tree.IsTemplate(node)) {
            node = tree.End(node) - 1;
            continue;
        }
        links.LeaveUpTo(node);
        hidden.LeaveUpTo(node);
        if (reader.IsHidden(node))
            hidden.Add(tree.End(node));
        if (IsLink(tree, node)) {
            HtmlLink link;
            link.Href = tree.Attribute(node, u"href").toString();
            link.Downloads = tree.HasAttribute(node, u"download");
            if (links.Count() < deepestLink)
                link.Text = hidden.Count() > 0 ? reader.TextContent(node) : reader.InnerText(node);
            links_.push_back(std::move(link));
            links.Add(tree.End(node));
        } else if (baseHref_.isEmpty() && tree.Is(node, u"base")) {
            baseHref_ = tree.Attribute(node, u"href").toString();
        } else if (title_.isEmpty() && tree.Is(node, u"title")) {
            title_ = reader.TextContent(node).simplified();
        }
    }
}

QString HtmlDocument::BodyOuterHtml(MarkupForm form) const {
    return InMarkupForm(body_, form);
}

QString BodyOfPage(QString html, MarkupForm form) {
    QString body;
    {
        const PageTree tree(std::move(html));
        if (tree.Body() != noNode)
            body = OuterHtml(tree, tree.Body());
    }
    return InMarkupForm(body, form);
}

} // namespace Brindle
