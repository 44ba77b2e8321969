#include "toolkit/Markup.h"

#include "PrintTo.h"
#include "toolkit/Text.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

struct Pair {
    QString Text;
    QString Expected;
};

TEST(CleanMarkup, MakesTheReplacementsInTheirOrder) {
    const Pair cases[] = {
        {u"  plain text \t"_s, u"plain text"_s},
        {u"\u00A0kept\u00A0"_s, u"\u00A0kept\u00A0"_s},
        {u"a&amp;amp;b"_s, u"a&amp;b"_s},
        {u"a    b"_s, u"a  b"_s}, // four blanks become two
        {u"a   b"_s, u"a  b"_s},  // and three as well
        {u"a\r\n\tb"_s, u"a  b"_s},
        {u"<Br>x<Span>"_s, u"<Br>x<Span>"_s}, // only the cases of the table
        {u"x<br/>y<br>z<BR>w"_s, u"xy z w"_s},
        {u"http%3A%2F%2Fa.test%2Fb%3a"_s, u"http://a.test/b%3a"_s},
        {u"<STRONG>a</STRONG> <strong>b</strong>"_s, u"a b"_s},
        {u"a&nbsp;&nbsp;b"_s, u"a b"_s},
        {u"l&#039;a, l&#39;b"_s, u"l'a, l'b"_s},
        {u"a &amp;nbsp; b"_s, u"a  b"_s}, // the ampersand is made first, so a hard blank arises
        {u"&#10;a&#10;"_s, u"a"_s},
        {u"&#10; a"_s, u"a"_s}, // the second trim
        {u"<b>A</b><ul><li>B</li></ul></A>"_s, u"AB"_s},
        {u"\"quoted\""_s, u"quoted"_s},
        {u"%252F"_s, u"%252F"_s},
        {u""_s, u""_s},
        {u" \r\n "_s, u""_s},
    };
    for (const Pair& c : cases)
        EXPECT_EQ(CleanMarkup(c.Text), c.Expected) << c.Text.toStdString();
}

TEST(StripTags, KeepsItsOddArithmetic) {
    const Pair cases[] = {
        {u"plain"_s, u"plain"_s},
        {u" <b>a</b> "_s, u"a"_s},
        {u"a<br>b<i>c</i>"_s, u"abc"_s},
        {u"x>y<b>z</b>"_s, u"y"_s}, // the stale position eats the ">" of the next tag
        {u"xxxx>a<b>c"_s, u"ac"_s}, // a round that removes nothing but moves on
        {u"a > b"_s, u"a > b"_s},
        {u"a < b"_s, u"a < b"_s}, // nothing closes it: the text stays
        {u"<b>a</b> 1 < 2"_s, u"a 1 < 2"_s},
        {u"<a><b"_s, u"<b"_s},
        {u"a<b>c>d<e>f"_s, u"ac>d<e>f"_s}, // a ">" before the next "<" ends it
        {u""_s, u""_s},
    };
    for (const Pair& c : cases)
        EXPECT_EQ(StripTags(c.Text), c.Expected) << c.Text.toStdString();
}

// The removal as it is described, step by step, with its own end: the same text and position once more.
QString StrippedStepByStep(QString text) {
    qsizetype a = text.indexOf(u'<') + 1;
    const qsizetype b = text.indexOf(u'>') + 1;
    if (a > b)
        text.remove(0, b);
    while (a > 0) {
        const QString before = text;
        const qsizetype c = text.indexOf(u'>') + 1;
        if (const qsizetype count = c - a + 1; count > 0 && a <= text.size())
            text.remove(a - 1, count);
        const qsizetype next = text.indexOf(u'<') + 1;
        if (text == before && next == a)
            break;
        a = next;
    }
    return Trim(text);
}

TEST(StripTags, EqualsTheStepByStepRemovalOnEveryShortText) {
    constexpr std::u16string_view alphabet = u"<>a ";
    for (int length = 0, count = 1; length <= 8; ++length, count *= 4) {
        for (int number = 0; number < count; ++number) {
            QString text;
            for (int i = 0, rest = number; i < length; ++i, rest /= 4)
                text.append(QChar(alphabet[static_cast<size_t>(rest % 4)]));
            ASSERT_EQ(StripTags(text), StrippedStepByStep(text)) << text.toStdString();
        }
    }
}

TEST(SplitText, KeepsEmptyParts) {
    EXPECT_EQ(SplitText(u"a,,b,", u","), (QStringList{u"a"_s, u""_s, u"b"_s, u""_s}));
    EXPECT_EQ(SplitText(u"", u","), (QStringList{u""_s}));
    EXPECT_EQ(SplitText(u" a , b ", u","), (QStringList{u" a "_s, u" b "_s}));
    EXPECT_EQ(SplitText(u"a::b::", u"::"), (QStringList{u"a"_s, u"b"_s, u""_s}));
    EXPECT_EQ(SplitText(u"abc", u""), (QStringList{u"abc"_s}));
}

TEST(SanitizeFileName, RemovesTheForbiddenNine) {
    EXPECT_EQ(SanitizeFileName(u" a\\b/c:d?e*f\"g<h>i|j.csv "), u" abcdefghij.csv "_s);
}

TEST(Text, TrimAndKeysAndReplacements) {
    EXPECT_EQ(Trim(u"\x01\x1F a\u00A0 \t"), u"a\u00A0"_s);
    EXPECT_EQ(UpperTrimmed(u" http://a.test/Stra\u00DFe?\u00E9 \n"), u"HTTP://A.TEST/STRASSE?\u00C9"_s);
    QString text = u"aaa.b.aa"_s;
    ReplaceAll(text, u"aa", u"b");
    EXPECT_EQ(text, u"ba.b.b"_s);
    ReplaceAll(text, u"", u"x");
    EXPECT_EQ(text, u"ba.b.b"_s);
    ReplaceAll(text, u"b", u"ubb");
    EXPECT_EQ(text, u"ubba.ubb.ubb"_s);
    EXPECT_FALSE(ContainsExact(u"abc", u""));
    EXPECT_FALSE(ContainsFolded(u"abc", u""));
    EXPECT_TRUE(ContainsFolded(u"xABCx", u"abc"));
    EXPECT_FALSE(ContainsFolded(u"x\u212Ax", u"k")); // only A to Z are folded
    EXPECT_TRUE(StartsWithFolded(u"HTTP://a", u"http"));
    EXPECT_FALSE(StartsWithFolded(u"htt", u"http"));
}

} // namespace
} // namespace Brindle
