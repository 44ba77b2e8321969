#include "browser/ie/IeDocument.h"

#include "core/Errors.h"
#include "page/HtmlDocument.h"
#include "page/MarkupFormText.h"

#include <algorithm>

namespace Brindle {

namespace {

// Calls a member by its name; an empty value when there is no object, no such member, or the call fails.
ComValue Invoke(const ComPointer<IDispatch>& object, const wchar_t* name, WORD how, VARIANT* argument = nullptr) {
    ComValue result;
    auto* member = const_cast<wchar_t*>(name);
    DISPID id = DISPID_UNKNOWN;
    if (!object || FAILED(object->GetIDsOfNames(IID_NULL, &member, 1, LOCALE_USER_DEFAULT, &id)))
        return result;
    DISPPARAMS arguments{argument, nullptr, argument ? 1u : 0u, 0};
    if (FAILED(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, how, &arguments, result.Get(), nullptr, nullptr)))
        return {};
    return result;
}

ComValue Property(const ComPointer<IDispatch>& object, const wchar_t* name) {
    return Invoke(object, name, DISPATCH_PROPERTYGET);
}

HtmlDocument Reread(const QString& html) {
    try {
        return HtmlDocument(html);
    } catch (const Failure&) { // nested beyond all measure
        return {};
    }
}

} // namespace

QString IeDocument::BodyOuterHtml(MarkupForm form) const {
    const QString html = OuterHtmlOf(L"body");
    // A page that asks to be shown as an old engine would show it is written as that one would write it.
    if (form == MarkupForm::Standard && html.startsWith(u"<BODY"))
        return Reread(html).BodyOuterHtml(MarkupForm::Standard);
    return InMarkupForm(html, form);
}

QString IeDocument::DocumentHtml() const {
    const QString html = OuterHtmlOf(L"documentElement");
    return html.startsWith(u"<HTML") ? Reread(html).DocumentHtml() : html;
}

QString IeDocument::OuterHtmlOf(const wchar_t* element) const {
    const ComValue value = Property(Property(document_, element).Object(), L"outerHTML");
    return value.TextLength() > LongestPage ? QString() : value.Text();
}

int IeDocument::LinkCount() const {
    return std::max(0, Property(Property(document_, L"links").Object(), L"length").Number());
}

QString IeDocument::LinkInnerText(int index) const {
    return Property(Link(index), L"innerText").Text();
}

void IeDocument::ClickLink(int index) const {
    Invoke(Link(index), L"click", DISPATCH_METHOD);
}

ComPointer<IDispatch> IeDocument::Link(int index) const {
    if (index < 0) // the collection takes it for the last one, or fails, by its version
        return {};
    ComValue place(index);
    return Invoke(Property(document_, L"links").Object(), L"item", DISPATCH_METHOD, place.Get()).Object();
}

} // namespace Brindle
