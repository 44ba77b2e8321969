#include "page/HtmlDocument.h"

#include "PrintTo.h"
#include "TagSoup.h"
#include "core/Errors.h"
#include "page/MarkupFormText.h"

#include <gtest/gtest.h>
#include <random>

namespace Brindle {

using namespace Qt::StringLiterals;
namespace {

using Test::TagSoup;

struct BodyCase {
    const char* Name;
    QStringView Page;
    QStringView Body; // within the tags of the body
};

const BodyCase bodyCases[] = {
    {"ImpliedElements", u"<!doctype html><p>a<p>b<table><tr><td>c<ul><li>d<li>e",
     u"<p>a</p><p>b</p><table><tbody><tr><td>c<ul><li>d</li><li>e</li></ul></td></tr></tbody></table>"},
    {"Escapes", u"a\u00a0&lt;&gt;&amp;&quot;'<b title='\"<>&amp;\u00a0'></b>",
     u"a&nbsp;&lt;&gt;&amp;\"'<b title=\"&quot;<>&amp;&nbsp;\"></b>"},
    {"NeighboursOfTheHardBlank", u"\u00a1\u00bf\u00e8\u20ac\U0001F600", u"\u00a1\u00bf\u00e8\u20ac\U0001F600"},
    {"CharacterReferences", u"&eacute;&#150;&notit;&#x1F600;&amp;copy;", u"\u00e9\u2013\u00acit;\U0001F600&amp;copy;"},
    {"VoidElements", u"<br/><img src=a><hr><input disabled><wbr></br>",
     u"<br><img src=\"a\"><hr><input disabled=\"\"><wbr><br>"},
    {"RawText", u"<body><script>a<b&&c</script><style>a>b</style><xmp><i>&amp;</xmp><iframe><p></iframe>",
     u"<script>a<b&&c</script><style>a>b</style><xmp><i>&amp;</xmp><iframe><p></iframe>"},
    {"EscapableText", u"<textarea>\n<b>&lt;</textarea><title><i></title>",
     u"<textarea>&lt;b&gt;&lt;</textarea><title>&lt;i&gt;</title>"},
    {"NoscriptIsRawText", u"<p>a<noscript class=x><img src=\"p\"></p>&amp;</noscript>b</noscript>",
     u"<p>a<noscript class=\"x\"><img src=\"p\"></p>&amp;</noscript>b</p>"},
    {"NoscriptBetweenHeadAndBody", u"<head><title>t</title></head><noscript><i></noscript><p>",
     u"<noscript><i></noscript><p></p>"},
    {"NoscriptWithinTextareaAndScript", u"<body><textarea><noscript></textarea><script>'<noscript>'</script>",
     u"<textarea>&lt;noscript&gt;</textarea><script>'<noscript>'</script>"},
    {"NoscriptInTemplateIsText", u"<p><template><noscript><b></noscript></template>",
     u"<p><template><noscript>&lt;b&gt;</noscript></template></p>"},
    {"NoscriptInHeadIsNotOfTheBody", u"<head><noscript><link></noscript><link></head><p>x", u"<p>x</p>"},
    {"ElementsThatChangedSince", u"<p>a<dialog open>b</dialog><menuitem>c</menuitem><isindex>",
     u"<p>a</p><dialog open=\"\">b</dialog><menuitem>c</menuitem><isindex></isindex>"},
    {"SlashBehindAnElementName", u"<main/>a</main><noscript/><b></noscript>c",
     u"<main>a</main><noscript><b></noscript>c"},
    {"SectionLeftOpenInMain", u"<main>a<section>b</main><section>c<main>d</section>e</main>f",
     u"<main>a<section>b</section></main><section>c<main>d</main></section>ef"},
    {"EndTagOfAnotherUnknownElement", u"<b<i>a</x-y>b<X-Y>c</x-y>d<pre></z>\n</pre>",
     u"<b<i>ab<x-y>c</x-y>d<pre>\n</pre></b<i>"},
    {"Misnested", u"<b>1<i>2</b>3</i><a href=x>4<a href=y>5",
     u"<b>1<i>2</i></b><i>3</i><a href=\"x\">4</a><a href=\"y\">5</a>"},
    {"FosterParents", u"<table>a<tr><td>b</td>c</tr></table>", u"ac<table><tbody><tr><td>b</td></tr></tbody></table>"},
    {"Foreign",
     u"<svg viewbox='0 0 1 1'><lineargradient gradientunits=u /><a xlink:href=#x "
     u"xml:lang=en></a><title>t<b>u</b></title>"
     u"<foreignobject><p>v</p></foreignobject></svg><math definitionurl=d><mi>x</mi></math>",
     u"<svg viewBox=\"0 0 1 1\"><linearGradient gradientUnits=\"u\"></linearGradient><a xlink:href=\"#x\" "
     u"xml:lang=\"en\"></a><title>t<b>u</b></title><foreignObject><p>v</p></foreignObject></svg>"
     u"<math definitionURL=\"d\"><mi>x</mi></math>"},
    {"Template", u"<body><template><tr><td>a</template><my-Tag A=b>c</my-tag>",
     u"<template><tr><td>a</td></tr></template><my-tag a=\"b\">c</my-tag>"},
    {"Comments", u"<!-- a --><body><!--b--><!c><?d><!---->", u"<!--b--><!--c--><!--?d--><!---->"},
    {"BehindTheBody", u"<body>a</body><!--b--></html>c", u"ac"},
    {"RepeatedAttributes", u"<body class=a><p id=1 ID=2></p><body class=b lang=c>", u"<p id=\"1\"></p>"},
    {"RepeatedAttributesWithoutValue", u"<input checked Checked name=a checked/value=b disabled name>",
     u"<input checked=\"\" name=\"a\" value=\"b\" disabled=\"\">"},
    {"LineEndsAndZeros", u"<pre>\n\na\r\nb\rc</pre>\u2400d<p title='\u2400'>",
     u"<pre>\na\nb\nc</pre>d<p title=\"\ufffd\"></p>"},
    {"ZerosWithinNames", u"<p\u2400 a\u2400=b>c</p\u2400>d", u"<p\ufffd a\ufffd=\"b\">c</p\ufffd>d"},
    {"ZerosInRawText", u"f<script>a\u2400<b\u2400</script><textarea>\u2400</textarea><!--\u2400--><?\u2400><!\u2400>e",
     u"f<script>a\ufffd<b\ufffd</script><textarea>\ufffd</textarea><!--\ufffd--><!--?\ufffd--><!--\ufffd-->e"},
    {"ZerosMakeNoTags", u"a<\u2400b>c</\u2400p>d<p>&am\u2400p;\u2400\u2400", u"a&lt;b&gt;c<!--\ufffdp-->d<p>&amp;</p>"},
    {"EmptyEndTag", u"a</></><x-y>b</x-y>", u"a<x-y>b</x-y>"},
    {"TextBeforeTheEndOfAForm", u"<form>a<input>\n</form>\nb<form>c</form>",
     u"<form>a<input>\n</form>\nb<form>c</form>"},
    {"ControlCharacters", u"a\u0001\u000b\u0085<p title='\u007f'>\ufdd0\U00100041",
     u"a\u0001\u000b\u0085<p title=\"\u007f\">\ufdd0\U00100041</p>"},
    {"LoneSurrogates", u"a\xd800z\xdc00\U0001F600", u"a\ufffdz\ufffd\U0001F600"},
};

class Body : public testing::TestWithParam<BodyCase> {};

TEST_P(Body, IsSerialised) {
    QString page = GetParam().Page.toString();
    page.replace(QChar(0x2400), QChar(u'\0')); // a literal cannot hold it
    const QString body = BodyOfPage(page, MarkupForm::Standard);
    ASSERT_TRUE(body.startsWith(u"<body")) << body.toStdString();
    const qsizetype begin = body.indexOf(u'>') + 1;
    EXPECT_EQ(body.sliced(begin).chopped(7), GetParam().Body.toString());
    EXPECT_TRUE(body.endsWith(u"</body>"));
}

INSTANTIATE_TEST_SUITE_P(All, Body, testing::ValuesIn(bodyCases), [](const auto& c) { return c.param.Name; });

TEST(BodyTag, KeepsItsAttributesAndComesInTheFormAskedFor) {
    const QString page = u"<body class=a lang='b c'><h3 id=x>y</h3>"_s;
    EXPECT_EQ(BodyOfPage(page, MarkupForm::Standard), u"<body class=\"a\" lang=\"b c\"><h3 id=\"x\">y</h3></body>"_s);
    EXPECT_EQ(BodyOfPage(page, MarkupForm::Legacy), u"<BODY class=a lang=\"b c\"><H3 id=x>y</H3></BODY>"_s);
    EXPECT_EQ(BodyOfPage(QString(), MarkupForm::Standard), u"<body></body>"_s);
    EXPECT_EQ(BodyOfPage(u"<frameset><frame src=a></frameset>"_s, MarkupForm::Standard),
              u"<frameset><frame src=\"a\"></frameset>"_s);
}

TEST(BodyTag, WhatLiesTooDeepStandsBesideItsParent) {
    const QString body = BodyOfPage(u"<div>"_s.repeated(600) + u"x<b>y</b>z"_s, MarkupForm::Standard);
    // html, body and 511 more; the rest are neighbours, each with its own text.
    EXPECT_EQ(body, u"<body>"_s + u"<div>"_s.repeated(510) + u"<div></div>"_s.repeated(89) +
                        u"<div>xz</div><b>y</b>"_s + u"</div>"_s.repeated(510) + u"</body>"_s);
}

struct LinkCase {
    const char* Name;
    QStringView Page;
    QStringView Texts; // joined by "|"
};

const LinkCase linkCases[] = {
    {"InOrderWithAreas", u"<a href=1>a</a><map><area href=2></map><a name=n>no</a><a href=''>b</a>", u"a||b"},
    {"WhiteSpaceCollapses", u"<a href=x>\n  Avanti\t \u203a </a>", u"Avanti \u203a"},
    {"HardBlanksStay", u"<a href=x>&nbsp;2&nbsp;</a>", u"\u00a02\u00a0"},
    {"ElementsWithin", u"<a href=x><b>1</b><i> 2</i><span>3</span><img alt=no></a>", u"1 23"},
    {"BlocksAndBreaks", u"<a href=x><div>a</div><div>b<br>c</div>d<p>e</p></a>", u"a\nb\nc\nd\n\ne"},
    {"Unshown",
     u"<a href=x>a<script>s</script><style>t</style><span hidden>h</span><noscript>n</noscript>"
     u"<b style='color:red; Display : none'>d</b><b style='visibility:hidden'>v</b>b</a>",
     u"ab"},
    {"OfAHiddenPart", u"<div style=display:none><a href=x> a <script>s</script></a></div>", u" a s"},
    {"NotOfTemplatesOrPictures", u"<template><a href=1>t</a></template><svg><a href=2>s</a></svg><a href=3>h</a>",
     u"h"},
    {"CellsAndPreserved", u"<a href=x><table><tr><td>a<td>b<tr><td>c</table><pre>d  e\nf</pre></a>",
     u"a\tb\nc\nd  e\nf"},
};

class Links : public testing::TestWithParam<LinkCase> {};

TEST_P(Links, HaveTheirShownTexts) {
    QStringList texts;
    const HtmlDocument page(GetParam().Page.toString());
    for (const HtmlLink& link : page.Links())
        texts.append(link.Text);
    EXPECT_EQ(texts.join(u'|'), GetParam().Texts.toString());
}

INSTANTIATE_TEST_SUITE_P(All, Links, testing::ValuesIn(linkCases), [](const auto& c) { return c.param.Name; });

TEST(HtmlDocument, KnowsItsBaseAndTitle) {
    const HtmlDocument page(u"<title> A\n B </title><base target=_top><base href=/x/><base href=/y/>"_s);
    EXPECT_EQ(page.BaseHref(), u"/x/"_s);
    EXPECT_EQ(page.Title(), u"A B"_s);
}

struct HostileCase {
    const char* Name;
    QString Page;
    QStringView Reason; // empty: it is read
};

QString Numbered(const char* piece, int count) {
    QString text;
    for (int i = 0; i < count; ++i)
        text += QString::fromLatin1(piece).arg(i);
    return text;
}

const HostileCase hostileCases[] = {
    {"DeepNesting", u"<div>"_s.repeated(100'000), u"nested"},
    {"DeepUnclosedFormatting", u"<b>"_s.repeated(100'000), u"nested"},
    {"DeepPicture", u"<svg><g>"_s.repeated(50'000), u"nested"},
    {"ManyAttributes", u"<p "_s + Numbered("a%1 ", 100'000) + u">"_s, u"attributes"},
    {"AttributesOfATagThatNeverEnds", u"<p "_s + Numbered("a%1 ", 100'000), u"attributes"},
    {"TooLong", u"x"_s.repeated(64 * 1024 * 1024 + 1), u"characters"},
    {"UnclosedParagraphsAndCells", u"<p>a"_s.repeated(20'000) + u"<table>"_s + u"<tr><td>b"_s.repeated(20'000), u""},
    {"UnclosedItemsAndLinks", u"<li><a href=x>a"_s.repeated(20'000), u""},
    {"ManySmallNests", u"<div><span><b>x</b></span></div>"_s.repeated(20'000), u""},
    {"StrayEndTags", u"</div></b></p>"_s.repeated(50'000), u""},
};

class Hostile : public testing::TestWithParam<HostileCase> {};

TEST_P(Hostile, FailsWithOneLineOrIsRead) {
    QString reason;
    try {
        const HtmlDocument page(GetParam().Page);
    } catch (const Failure& failure) {
        reason = failure.Message();
    }
    EXPECT_TRUE(GetParam().Reason.isEmpty() ? reason.isEmpty() : reason.contains(GetParam().Reason))
        << reason.toStdString();
    EXPECT_FALSE(reason.contains(u'\n'));
}

INSTANTIATE_TEST_SUITE_P(All, Hostile, testing::ValuesIn(hostileCases), [](const auto& c) { return c.param.Name; });

TEST(HtmlDocument, LeavesTheParserWhenAPageCostsTooMuch) {
    PageBounds memory;
    memory.ParserMemory = 4LL * 1024 * 1024;
    const QString page = u"<b>x</b>"_s.repeated(100'000);
    EXPECT_THROW(HtmlDocument(page, memory), Failure);
    PageBounds time;
    time.ParserMs = -1;
    time.ParserMsPerMiB = 0;
    EXPECT_THROW(HtmlDocument(page, time), Failure);
    EXPECT_NO_THROW(HtmlDocument{page});
}

TEST(HtmlDocument, ReadsAnyTagSoup) {
    std::mt19937 random(11);
    for (int round = 0; round < 3000; ++round) {
        QString page = TagSoup(random, 30);
        page.insert(static_cast<qsizetype>(random() % 100), QChar(random() % 2 ? 0 : 0xd83d));
        const QString body = BodyOfPage(page, MarkupForm::Standard);
        ASSERT_TRUE(body.startsWith(u"<body") || body.startsWith(u"<frameset")) << page.toStdString();
        // However the parser gets it.
        PageBounds pieces;
        pieces.PieceSize = 1 + round % 40;
        ASSERT_EQ(HtmlDocument(page, pieces).BodyOuterHtml(MarkupForm::Standard), body) << page.toStdString();
        const QString legacy = ToLegacyForm(body);
        ASSERT_EQ(ToLegacyForm(legacy), legacy) << page.toStdString();
    }
}

TEST(HtmlDocument, IsTheSameHoweverItIsCutWithinPlainText) {
    const QString page(u"<p><font color=a><plaintext>te</plaintext><b>x<b>\0<i>\0<b>y"_s);
    PageBounds pieces;
    for (pieces.PieceSize = 1; pieces.PieceSize < 40; ++pieces.PieceSize)
        EXPECT_EQ(HtmlDocument(page, pieces).DocumentHtml(), HtmlDocument(page).DocumentHtml()) << pieces.PieceSize;
}

} // namespace
} // namespace Brindle
