#pragma once

#include "browser/ie/ComPointer.h"
#include "core/MarkupForm.h"

namespace Brindle {

/// The document that the web browser control shows, read through Automation by name, as a script would. A call that
/// fails anywhere on its way gives the empty text or 0.
class IeDocument {
public:
    /// A page above this length, in UTF-16 units, is not read.
    static constexpr qsizetype LongestPage = 64 * 1024 * 1024;

    /// `document` may be none.
    explicit IeDocument(ComPointer<IDispatch> document) : document_(std::move(document)) {}

    /// document.body.outerHTML in a markup form, whichever of its own ways of writing the engine has chosen.
    QString BodyOuterHtml(MarkupForm form) const;
    /// document.documentElement.outerHTML in the form of today's engines.
    QString DocumentHtml() const;
    /// document.links.length
    int LinkCount() const;
    /// document.links.item(index).innerText, 0-based; empty beyond the last one.
    QString LinkInnerText(int index) const;
    /// document.links.item(index).click(); nothing beyond the last one.
    void ClickLink(int index) const;

private:
    QString OuterHtmlOf(const wchar_t* element) const;
    ComPointer<IDispatch> Link(int index) const;

    ComPointer<IDispatch> document_;
};

} // namespace Brindle
