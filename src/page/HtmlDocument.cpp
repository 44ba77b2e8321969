#include "page/HtmlDocument.h"

#include "page/HtmlSerializer.h"
#include "page/HtmlTree.h"
#include "page/InnerText.h"
#include "page/MarkupFormText.h"

namespace Brindle {

namespace {

// Links within links beyond this have no text of their own.
constexpr int deepestLink = 8;

bool IsLink(const GumboNode* node) {
    return (IsHtmlElement(node, GUMBO_TAG_A) || IsHtmlElement(node, GUMBO_TAG_AREA)) &&
           AttributeOf(node->v.element, "href");
}

// Gathers what the page says of itself in one walk over its tree.
class Gathering {
public:
    std::vector<HtmlLink> Links;
    QString BaseHref;
    QString Title;

    void Over(const GumboNode* root) {
        Walk(
            root, [this](const GumboNode* node, int) { return Enter(node); },
            [this](const GumboNode* node, int) {
                links_ -= IsLink(node) ? 1 : 0;
                hidden_ -= IsHidden(node) ? 1 : 0;
            });
    }

private:
    bool Enter(const GumboNode* node) {
        // The contents of a template are no part of the document.
        if (!ChildrenOf(node) || node->type == GUMBO_NODE_TEMPLATE)
            return false;
        const GumboElement& element = node->v.element;
        if (IsLink(node)) {
            HtmlLink link;
            link.Href = QString::fromUtf8(AttributeOf(element, "href"));
            link.Downloads = AttributeOf(element, "download") != nullptr;
            if (links_ < deepestLink)
                link.Text = hidden_ > 0 || IsHidden(node) ? TextContent(node) : InnerText(node);
            Links.push_back(std::move(link));
            ++links_;
        } else if (IsHtmlElement(node, GUMBO_TAG_BASE) && BaseHref.isEmpty()) {
            if (const char* const href = AttributeOf(element, "href"))
                BaseHref = QString::fromUtf8(href);
        } else if (IsHtmlElement(node, GUMBO_TAG_TITLE) && Title.isEmpty()) {
            Title = TextContent(node).simplified();
        }
        hidden_ += IsHidden(node) ? 1 : 0;
        return true;
    }

    int links_ = 0;
    int hidden_ = 0;
};

} // namespace

HtmlDocument::HtmlDocument(const QString& html, const PageBounds& bounds) {
    const HtmlTree tree(html, bounds);
    if (const GumboNode* const body = tree.Body())
        body_ = tree.Text(OuterHtml(body));
    Gathering gathering;
    gathering.Over(tree.Root());
    links_ = std::move(gathering.Links);
    for (HtmlLink& link : links_) {
        link.Href = tree.Text(link.Href);
        link.Text = tree.Text(link.Text);
    }
    baseHref_ = tree.Text(gathering.BaseHref);
    title_ = tree.Text(gathering.Title);
}

QString HtmlDocument::BodyOuterHtml(MarkupForm form) const {
    return InMarkupForm(body_, form);
}

QString BodyOfPage(const QString& html, MarkupForm form) {
    return HtmlDocument(html).BodyOuterHtml(form);
}

} // namespace Brindle
