#pragma once

#include "core/MarkupForm.h"
#include "page/PageTree.h"

#include <QString>

#include <vector>

namespace Brindle {

/// A link of a page (HTML, section 3.1.5, document.links).
struct HtmlLink {
    QString Href; ///< as it is written
    QString Text; ///< as it is shown
    bool Downloads = false;
};

/// What a browser knows of a page that it has parsed.
class HtmlDocument {
public:
    HtmlDocument() = default;
    /// Parses a whole page. Throws `Failure` with one line when the page is beyond the bounds.
    explicit HtmlDocument(const QString& html, const PageBounds& bounds = {});

    /// The body element, its tags included. Empty for a document that was never loaded.
    QString BodyOuterHtml(MarkupForm form) const;
    /// The whole document, from the html element's start tag to its end tag. Empty for a document that was never
    /// loaded.
    QString DocumentHtml() const { return beforeBody_ + body_ + behindBody_; }
    /// In document order.
    const std::vector<HtmlLink>& Links() const { return links_; }
    /// What the page gives as the address to resolve its links with; empty when it gives none.
    const QString& BaseHref() const { return baseHref_; }
    const QString& Title() const { return title_; }

private:
    void Gather(const PageTree& tree);

    QString beforeBody_;
    QString body_;
    QString behindBody_;
    std::vector<HtmlLink> links_;
    QString baseHref_;
    QString title_;
};

/// The body of a saved page as the browser would deliver it in this form. Throws `Failure` with one line, without the
/// page's name, when the page is beyond the bounds of what is parsed.
QString BodyOfPage(QString html, MarkupForm form);

} // namespace Brindle
