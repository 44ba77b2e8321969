#include "browser/ie/IeDocument.h"

#include "PrintTo.h"
#include "ScriptedObject.h"
#include "browser/ie/IeError.h"

#include <gtest/gtest.h>

namespace Brindle {

using namespace Qt::StringLiterals;
namespace {

using Test::ScriptedObject;

// A document with a body and links, as the pages' engine gives them to a script.
struct Page {
    ComPointer<ScriptedObject> Document = ScriptedObject::Make();
    ComPointer<ScriptedObject> Body = ScriptedObject::Make();
    ComPointer<ScriptedObject> Links = ScriptedObject::Make();
    std::vector<ComPointer<ScriptedObject>> Link;
    std::vector<int> Clicked;

    explicit Page(const QStringList& texts = {}, const QString& html = u"<body></body>"_s) {
        Body->Set(L"outerHTML", html);
        for (const QString& text : texts) {
            Link.push_back(ScriptedObject::Make());
            Link.back()->Set(L"innerText", text);
            Link.back()->Set(L"click",
                             [this, index = static_cast<int>(Link.size()) - 1](const DISPPARAMS& arguments, VARIANT*) {
                                 EXPECT_EQ(arguments.cArgs, 0u);
                                 Clicked.push_back(index);
                                 return S_OK;
                             });
        }
        Links->Set(L"length", static_cast<long>(texts.size()));
        Links->Set(L"item", [this](const DISPPARAMS& arguments, VARIANT* result) {
            if (arguments.cArgs != 1)
                return DISP_E_BADPARAMCOUNT;
            const auto index = static_cast<size_t>(ComValue::NumberOf(arguments.rgvarg[0]));
            // Beyond the end, the engine succeeds with an object that is none.
            result->vt = VT_DISPATCH;
            result->pdispVal = nullptr;
            return index < Link.size() ? ScriptedObject::Give(Link[index], result) : S_OK;
        });
        Document->Set(L"body", Body);
        Document->Set(L"documentElement", Body);
        Document->Set(L"links", Links);
    }

    IeDocument Read() const { return IeDocument(Document.As<IDispatch>()); }
};

TEST(IeDocument, ReadsBodyAndLinks) {
    const QString html = u"<body>\u00e9\U0001F600"_s + QChar(0) + u"x</body>"_s;
    Page page({u"Avanti \u203a"_s, QString(), u"3"_s}, html);
    const IeDocument document = page.Read();
    EXPECT_EQ(document.BodyOuterHtml(MarkupForm::Standard), html);
    EXPECT_EQ(document.DocumentHtml(), html);
    EXPECT_EQ(document.LinkCount(), 3);
    EXPECT_EQ(document.LinkInnerText(0), u"Avanti \u203a"_s);
    EXPECT_EQ(document.LinkInnerText(1), QString());
    EXPECT_EQ(document.LinkInnerText(2), u"3"_s);
    document.ClickLink(2);
    document.ClickLink(0);
    EXPECT_EQ(page.Clicked, (std::vector<int>{2, 0}));
}

TEST(IeDocument, GivesTheFormThatIsAskedForWhateverTheEngineWrites) {
    const QString standard = u"<body><h3 class=\"a\">b</h3></body>"_s;
    const QString legacy = u"<BODY><H3 class=a>b</H3></BODY>"_s;
    for (const QString& html : {standard, legacy}) {
        const Page page({}, html);
        EXPECT_EQ(page.Read().BodyOuterHtml(MarkupForm::Standard), standard);
        EXPECT_EQ(page.Read().BodyOuterHtml(MarkupForm::Legacy), legacy);
    }
    EXPECT_EQ(Page({}, u"<HTML><BODY id=a></BODY></HTML>"_s).Read().DocumentHtml(),
              u"<html><head></head><body id=\"a\"></body></html>"_s);
}

TEST(IeDocument, BeyondTheLinksThereIsNothing) {
    Page page({u"1"_s});
    for (const int index : {-1, 1, 1000}) {
        EXPECT_EQ(page.Read().LinkInnerText(index), QString());
        page.Read().ClickLink(index);
    }
    EXPECT_TRUE(page.Clicked.empty());
}

// A page that goes while it is read answers with errors, with nothing, or with something else, at any step.
TEST(IeDocument, WhateverFailsGivesNothing) {
    const ScriptedObject::Member answers[] = {
        [](const DISPPARAMS&, VARIANT*) { return E_FAIL; },
        [](const DISPPARAMS&, VARIANT*) { return S_OK; },
        [](const DISPPARAMS&, VARIANT* result) { return result->vt = VT_NULL, S_OK; },
        [](const DISPPARAMS&, VARIANT* result) { return result->vt = VT_DISPATCH, result->pdispVal = nullptr, S_OK; },
        [](const DISPPARAMS&, VARIANT* result) { return result->vt = VT_ERROR, result->scode = E_ACCESSDENIED, S_OK; },
    };
    struct Step {
        const wchar_t* Object;
        const wchar_t* Member;
    };
    for (const Step step : {Step{L"document", L"body"}, Step{L"body", L"outerHTML"}, Step{L"document", L"links"},
                            Step{L"links", L"length"}, Step{L"links", L"item"}, Step{L"link", L"innerText"}})
        for (size_t answer = 0; answer <= std::size(answers); ++answer) {
            SCOPED_TRACE(QString::fromWCharArray(step.Member).toStdString() + " answer " + std::to_string(answer));
            Page page({u"1"_s});
            const std::wstring object = step.Object;
            ScriptedObject* const changed = object == L"document" ? page.Document.Get()
                                            : object == L"body"   ? page.Body.Get()
                                            : object == L"links"  ? page.Links.Get()
                                                                  : page.Link[0].Get();
            if (answer < std::size(answers))
                changed->Set(step.Member, answers[answer]);
            else
                changed->Remove(step.Member);
            const IeDocument document = page.Read();
            const std::wstring member = step.Member;
            const bool ofBody = member == L"body" || member == L"outerHTML";
            const bool ofLinks = member == L"links";
            EXPECT_EQ(document.BodyOuterHtml(MarkupForm::Standard).isEmpty(), ofBody);
            EXPECT_EQ(document.LinkCount(), ofLinks || member == L"length" ? 0 : 1);
            EXPECT_EQ(document.LinkInnerText(0).isEmpty(), ofLinks || member == L"item" || member == L"innerText");
            document.ClickLink(0);
            EXPECT_EQ(page.Clicked.size(), member == L"links" || member == L"item" ? 0u : 1u);
        }
    const IeDocument none{{}};
    EXPECT_EQ(none.BodyOuterHtml(MarkupForm::Standard), QString());
    EXPECT_EQ(none.LinkCount(), 0);
    EXPECT_EQ(none.LinkInnerText(0), QString());
    none.ClickLink(0);
}

TEST(IeDocument, LetsGoOfAllThatItTook) {
    Page page({u"1"_s});
    {
        const IeDocument document = page.Read();
        document.BodyOuterHtml(MarkupForm::Standard);
        document.LinkCount();
        document.LinkInnerText(0);
        document.ClickLink(0);
    }
    const auto references = [](ScriptedObject* object) {
        object->AddRef();
        return object->Release();
    };
    EXPECT_EQ(references(page.Document.Get()), 1u);
    EXPECT_EQ(references(page.Body.Get()), 3u); // the script's own, and the document's two
    EXPECT_EQ(references(page.Links.Get()), 2u);
    EXPECT_EQ(references(page.Link[0].Get()), 1u);
}

TEST(LoaderErrorText, IsOneLineForAnyError) {
    EXPECT_EQ(LoaderErrorText(static_cast<qint32>(0x800C0005)), u"the server or the proxy was not found"_s);
    EXPECT_EQ(LoaderErrorText(static_cast<qint32>(0x80004005)), u"the page could not be loaded (error 80004005)"_s);
    EXPECT_EQ(LoaderErrorText(0), u"the page could not be loaded (error 00000000)"_s);
}

} // namespace
} // namespace Brindle
