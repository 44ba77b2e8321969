#pragma once

#include "page/PageBounds.h"

#include <QByteArray>

#include <gumbo.h>
#include <memory>
#include <vector>

namespace Brindle {

/// The element tree of a page, parsed as HTML (section 13.2). The nodes live as long as the tree.
class HtmlTree {
public:
    /// Throws `Failure` with one line when the page is beyond the bounds.
    explicit HtmlTree(const QString& html, const PageBounds& bounds = {});
    ~HtmlTree();
    HtmlTree(const HtmlTree&) = delete;
    HtmlTree& operator=(const HtmlTree&) = delete;

    /// The html element.
    const GumboNode* Root() const { return root_; }
    /// The body element, or the frameset of a page that has one in its place; null when there is neither.
    const GumboNode* Body() const;

    /// A text of the tree as the page has it.
    QString Text(const QString& fromTree) const { return source_.ControlsMoved ? WithControls(fromTree) : fromTree; }

private:
    class Arena;

    PreparedPage source_; // the nodes point into it
    std::unique_ptr<Arena> arena_;
    const GumboNode* root_ = nullptr;
};

/// The nodes within an element or template; null for other nodes.
const GumboVector* ChildrenOf(const GumboNode* node);

/// Whether a node is text, white space included.
bool IsText(const GumboNode* node);

/// Whether a node is an HTML element (not one of SVG or MathML) with this tag.
bool IsHtmlElement(const GumboNode* node, GumboTag tag);

/// The name of an element: in lower case for HTML, in the case of SVG for SVG, UTF-8.
QByteArray NameOf(const GumboElement& element);

/// An attribute's value, UTF-8; null when the element has none of that name.
const char* AttributeOf(const GumboElement& element, const char* name);

/// Goes over a node and everything in it in document order, without recursion. `enter` gets a node and its depth below
/// the first one, and says whether to go into it; `leave` gets the nodes that were gone into, when they are done.
template <typename Enter, typename Leave>
void Walk(const GumboNode* first, Enter enter, Leave leave) {
    struct Step {
        const GumboNode* Node;
        unsigned Next;
    };
    std::vector<Step> path;
    if (enter(first, 0))
        path.push_back({first, 0});
    while (!path.empty()) {
        Step& step = path.back();
        const GumboVector* const children = ChildrenOf(step.Node);
        if (!children || step.Next >= children->length) {
            const GumboNode* const done = step.Node;
            path.pop_back();
            leave(done, static_cast<int>(path.size()));
            continue;
        }
        const auto* const child = static_cast<const GumboNode*>(children->data[step.Next++]);
        if (enter(child, static_cast<int>(path.size())))
            path.push_back({child, 0});
    }
}

} // namespace Brindle
