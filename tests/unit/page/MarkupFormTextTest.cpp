#include "page/MarkupFormText.h"

#include "PrintTo.h"

#include <gtest/gtest.h>
#include <random>

namespace Brindle {
namespace {

struct FormCase {
    const char* Name;
    QStringView Standard;
    QStringView Legacy;
};

const FormCase formCases[] = {
    {"BareClass", u"<h3 class=\"listingTitleLine\">A &amp; B</h3>", u"<H3 class=listingTitleLine>A &amp; B</H3>"},
    {"SpaceInValueKeepsQuotes", u"<div class=\"a b\" id=\"x_1-Y\">", u"<DIV class=\"a b\" id=x_1-Y>"},
    {"EmptyValueKeepsQuotes", u"<img alt=\"\">", u"<IMG alt=\"\">"},
    {"AddressesAndStylesKeepQuotes",
     u"<a href=\"x\" usemap=\"m\"></a><form action=\"y\"></form><img src=\"z\" longdesc=\"l\" style=\"s\">"
     u"<q cite=\"c\" data=\"d\" codebase=\"b\" background=\"g\"></q>",
     u"<A href=\"x\" useMap=\"m\"></A><FORM action=\"y\"></FORM><IMG src=\"z\" longdesc=\"l\" style=\"s\">"
     u"<Q cite=\"c\" data=\"d\" codebase=\"b\" background=\"g\"></Q>"},
    {"AttributesOfLaterHtmlKeepQuotes",
     u"<span itemprop=\"name\" autocomplete=\"off\" data-x=\"1\" role=\"main\" placeholder=\"a\" srcset=\"b\"></span>",
     u"<SPAN itemprop=\"name\" autocomplete=\"off\" data-x=\"1\" role=\"main\" placeholder=\"a\" srcset=\"b\"></SPAN>"},
    {"BooleansStandAlone",
     u"<a class=\"prec\" disabled=\"\">x</a><input checked=\"checked\" readonly=\"\" nowrap=\"\">",
     u"<A class=prec disabled>x</A><INPUT checked readOnly noWrap>"},
    {"BooleanOfLaterHtmlKeepsItsEmptyValue", u"<input required=\"\" hidden=\"\">",
     u"<INPUT required=\"\" hidden=\"\">"},
    {"MixedCaseNames",
     u"<td colspan=\"2\" rowspan=\"3\" valign=\"top\" bgcolor=\"#fff\" accesskey=\"a\" tabindex=\"-1\"></td>",
     u"<TD colSpan=2 rowSpan=3 vAlign=top bgColor=\"#fff\" accessKey=a tabIndex=-1></TD>"},
    {"MoreMixedCaseNames",
     u"<table cellpadding=\"1\" cellspacing=\"0\"></table><iframe frameborder=\"0\" marginwidth=\"1\" "
     u"marginheight=\"2\"></iframe><del datetime=\"x\"></del><form enctype=\"y\"><input maxlength=\"150\" "
     u"name=\"what\"></form>",
     u"<TABLE cellPadding=1 cellSpacing=0></TABLE><IFRAME frameBorder=0 marginWidth=1 "
     u"marginHeight=2></IFRAME><DEL dateTime=x></DEL><FORM encType=y><INPUT maxLength=150 name=what></FORM>"},
    {"PercentAndDotKeepQuotes", u"<td width=\"50%\" height=\"1.5\">", u"<TD width=\"50%\" height=\"1.5\">"},
    {"NonAsciiLettersKeepQuotes", u"<b title=\"caff\u00e8\">", u"<B title=\"caff\u00e8\">"},
    {"EventHandler", u"<a onclick=\"go\" onkeyup=\"go()\">", u"<A onclick=go onkeyup=\"go()\">"},
    {"CustomAndForeignNames", u"<my-tag1><svg viewBox=\"0 0 1 1\"><linearGradient id=\"g\"></linearGradient></svg>",
     u"<MY-TAG1><SVG viewBox=\"0 0 1 1\"><LINEARGRADIENT id=g></LINEARGRADIENT></SVG>"},
    {"TextStays", u"a < b &lt;p class=\"x\"&gt; 1<2 </ <", u"a < b &lt;p class=\"x\"&gt; 1<2 </ <"},
    {"TagEndWithinValue", u"<a title=\"x > <b class='y'>\" id=\"z\">t</a>",
     u"<A title=\"x > <b class='y'>\" id=z>t</A>"},
    {"CommentsStay", u"<p><!-- <b class=\"x\"> --><!----><!--> <i class=\"x\">",
     u"<P><!-- <b class=\"x\"> --><!----><!--> <I class=x>"},
    {"DoctypeAndInstructionsStay", u"<!doctype html><?php a ?></ b><p>", u"<!doctype html><?php a ?></ b><P>"},
    {"ScriptsStay", u"<script type=\"a\">if (a<b) '<p class=\"x\"></p>'</script><p id=\"x\">",
     u"<SCRIPT type=a>if (a<b) '<p class=\"x\"></p>'</SCRIPT><P id=x>"},
    {"ScriptWithinScriptComment", u"<script><!-- <script> </script> <p> --></script><p>",
     u"<SCRIPT><!-- <script> </script> <p> --></SCRIPT><P>"},
    {"OtherRawTextStays",
     u"<style>a>b{}<p></style><noscript><img src=\"x\"></noscript><xmp><b></xmp><iframe><p></iframe><plaintext><p>"
     u"</plaintext></plaintext></body>",
     u"<STYLE>a>b{}<p></STYLE><NOSCRIPT><img src=\"x\"></NOSCRIPT><XMP><b></XMP><IFRAME><p></IFRAME><PLAINTEXT><p>"
     u"</plaintext></PLAINTEXT></BODY>"},
    {"EndTagOfAnotherNameEndsNoRawText", u"<style></styles></STYLE ><p>", u"<STYLE></styles></STYLE ><P>"},
    {"UnclosedTagIsNone", u"<p>a<div class=\"x\" id=\"y", u"<P>a<div class=\"x\" id=\"y"},
    {"UnclosedTagWithoutQuote", u"<p><div class=\"x\" ", u"<P><div class=\"x\" "},
    {"UnclosedComment", u"<p><!-- <b>", u"<P><!-- <b>"},
    {"SingleQuotes", u"<p class='a' title='b c'>", u"<P class=a title='b c'>"},
    {"ValueBeforeSlashKeepsQuotes", u"<br class=\"a\"/><input checked=\"\"/>", u"<BR class=\"a\"/><INPUT checked/>"},
    {"OrderAndSpacing", u"<p  id = \"a\"\n title=\"b\">", u"<P  id=a\n title=b>"},
};

class LegacyForm : public testing::TestWithParam<FormCase> {};

TEST_P(LegacyForm, IsMadeAndKept) {
    const QString legacy = ToLegacyForm(GetParam().Standard.toString());
    EXPECT_EQ(legacy, GetParam().Legacy.toString());
    EXPECT_EQ(ToLegacyForm(legacy), legacy);
}

INSTANTIATE_TEST_SUITE_P(All, LegacyForm, testing::ValuesIn(formCases), [](const auto& c) { return c.param.Name; });

TEST(LegacyForm, AnyTextIsReadToItsEndAndKeptByASecondPass) {
    // Pieces chosen so that every state of the reading meets every other one.
    const QStringView pieces[] = {u"<",     u">",  u"\"",     u"'",         u"=",        u"/",       u" ",
                                  u"!--",   u"--", u"p",      u"script",    u"</script", u"class",   u"disabled",
                                  u"style", u"\n", u"noWrap", u"plaintext", u"&amp;",    u"\u0000x", u"id=\"a\""};
    std::mt19937 random(7);
    for (int round = 0; round < 4000; ++round) {
        QString text;
        for (int i = 0; i < 24; ++i)
            text += pieces[random() % std::size(pieces)];
        const QString legacy = ToLegacyForm(text);
        ASSERT_LE(legacy.size(), text.size());
        ASSERT_EQ(ToLegacyForm(legacy), legacy) << text.toStdString();
    }
}

} // namespace
} // namespace Brindle
