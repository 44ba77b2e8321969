#include "page/Selector.h"

#include "PrintTo.h"
#include "SelectorSamples.h"
#include "core/Errors.h"

#include <ctime>
#include <gtest/gtest.h>

namespace Brindle {

using namespace Qt::StringLiterals;
namespace {

using Test::SelectorSample;
using Test::SelectorSamples;

// The "n" attributes of what is selected, in order.
QString Numbers(const PageTree& tree, const std::vector<NodeIndex>& nodes) {
    QStringList numbers;
    for (const NodeIndex node : nodes)
        numbers.append(tree.HasAttribute(node, u"n") ? tree.Attribute(node, u"n").toString()
                                                     : tree.Name(node).toString());
    return numbers.join(u' ');
}

TEST(Selector, SelectsWhatASlowMatcherSelects) {
    SelectorSamples samples(7);
    int found = 0;
    for (int round = 0; round < 300; ++round) {
        const QString page = samples.Page();
        const PageTree tree(page);
        for (int i = 0; i < 20; ++i) {
            const SelectorSample sample = samples.Selector(true);
            std::vector<NodeIndex> expected;
            for (NodeIndex node = 0; node < tree.Count(); ++node)
                if (tree.IsElement(node) && sample.Fits(tree, node))
                    expected.push_back(node);
            const std::vector<NodeIndex> selected = Selector::Parse(sample.Text).SelectAll(tree);
            ASSERT_EQ(Numbers(tree, selected), Numbers(tree, expected)) << sample.Text.toStdString() << '\n'
                                                                        << page.toStdString();
            found += expected.empty() ? 0 : 1;
        }
    }
    EXPECT_GT(found, 1500);
}

TEST(Selector, SearchesWithinAnElement) {
    const PageTree tree(u"<body n=b><div n=1 class=r><a n=2></a><p n=3><a n=4></a></p><template><a n=5></a></template>"
                        "</div><div n=6 class=r><a n=7></a></div>"_s);
    const auto within = [&tree](QStringView selector, int record) {
        const NodeIndex node = Selector::Parse(u".r").SelectAll(tree)[static_cast<size_t>(record)];
        return Numbers(tree, Selector::Parse(selector).SelectAll(tree, node));
    };
    EXPECT_EQ(within(u"a", 0), u"2 4"_s);
    EXPECT_EQ(within(u"body a", 1), u"7"_s);
    EXPECT_EQ(within(u"div", 0), QString());
    EXPECT_EQ(within(u":scope > a", 0), u"2"_s);
    EXPECT_EQ(within(u":scope a, div > p", 0), u"2 3 4"_s);
    EXPECT_EQ(within(u":scope", 1), u"6"_s);
    EXPECT_EQ(within(u".r:scope:nth-child(2) > :first-child", 1), u"7"_s);
    EXPECT_EQ(within(u".r:scope:nth-child(2) > :first-child", 0), QString());

    const SelectorQuery query(tree, Selector::Parse(u":scope > a, p"));
    EXPECT_EQ(Numbers(tree, query.All()), u"3"_s);
    EXPECT_TRUE(query.Matches(query.All()[0]));
    EXPECT_EQ(query.FirstWithin(tree.Root()), query.All()[0]);
    EXPECT_EQ(query.FirstWithin(query.All()[0]), query.All()[0] + 1);
    EXPECT_EQ(query.FirstWithin(query.All()[0] + 1), noNode);
    EXPECT_EQ(Numbers(tree, Selector::Parse(u":scope").SelectAll(tree)), u"html"_s);
    EXPECT_TRUE(Selector::Parse(u".x:scope, p:scope").Matches(tree, query.All()[0]));
}

struct BadSelector {
    QStringView Text;
    int Place;
    QStringView Reason;
};

TEST(Selector, SaysWhatIsWrongAndWhere) {
    const BadSelector cases[] = {
        {u"", 1, u"no selector"},
        {u" a >", 5, u"missing at the end"},
        {u"a,,b", 3, u"before \",\""},
        {u"> a", 1, u"before \">\""},
        {u"a $ b", 3, u"before \"$\""},
        {u"a\U0001F600 \u0007", 5, u"a control character"},
        {u"a(", 2, u"\"(\" cannot stand"},
        {u"a)", 2, u"\")\" cannot stand"},
        {u"a.", 3, u"class"},
        {u".2c", 2, u"class"},
        {u"#", 2, u"id"},
        {u"svg|a", 4, u"namespaces"},
        {u"[a", 3, u"\"=\""},
        {u"[a=]", 4, u"quotes"},
        {u"[a=2]", 4, u"quotes"},
        {u"[a='x]", 4, u"closing quote"},
        {u"[a='x\\", 4, u"closing quote"},
        {u"[a='x\ny']", 6, u"end of a line"},
        {u"[a=x s]", 6, u"\"]\""},
        {u"a::before", 2, u"pseudo-elements"},
        {u"a:hover", 2, u":hover is not known"},
        {u":h\\a r", 1, u":h\\a r is not known"},
        {u"b a:IS(c)", 4, u":is() is not known"},
        {u":not()", 6, u"an element"},
        {u":not(a", 7, u"\")\" is missing at the end"},
        {u":has(b:has(c))", 12, u"cannot hold another"},
        {u":has-text(Phone)", 11, u"quotes"},
        {u":has-text(' ')", 11, u"no text"},
        {u":nth-child()", 12, u"2n+1"},
        {u":nth-child(2n + )", 17, u"number"},
        {u":nth-child(+ 1)", 12, u"2n+1"},
        {u":nth-child(2n 1)", 15, u"\")\""},
        {u"a :scope", 3, u"at the beginning"},
        {u":not(:scope)", 6, u"at the beginning"},
        {u":scope + a", 10, u"within it"},
        {u"a /* b", 3, u"comment"},
    };
    for (const BadSelector& bad : cases) {
        QString message;
        try {
            Selector::Parse(bad.Text);
        } catch (const Failure& failure) {
            message = failure.Message();
        }
        EXPECT_TRUE(message.startsWith(u"selector, character %1: "_s.arg(bad.Place)) && message.contains(bad.Reason))
            << bad.Text.toString().toStdString() << ": " << message.toStdString();
    }
    EXPECT_THROW(Selector::Parse(QString(u":not("_s.repeated(20) + u"a"_s + u")"_s.repeated(20))), Failure);
    EXPECT_THROW(Selector::Parse(QString(u"a,"_s.repeated(1000) + u"a"_s)), Failure);
}

TEST(Selector, EscapesNamesAndTexts) {
    const QStringView names[] = {u"2col",          u"-", u"-3", u"--x", u"a b", u"\u00e9\U0001F600", u"a.b:c#d",
                                 u"\u0001\u007f\n"};
    for (const QStringView name : names) {
        const PageTree tree(u"<p n=1 id=\"%1\"><p id=other>"_s.arg(name));
        const QString written[] = {u'#' + EscapedIdentifier(name), u"[id=" + EscapedString(name) + u']'};
        for (const QString& selector : written)
            EXPECT_EQ(Numbers(tree, Selector::Parse(selector).SelectAll(tree)), u"1"_s) << selector.toStdString();
    }
    EXPECT_EQ(EscapedIdentifier(u"2-\u0001-"), u"\\32 -\\1 -"_s);
    EXPECT_EQ(EscapedString(u"a\"\\\n"), u"\"a\\\"\\\\\\a \""_s);
}

TEST(Selector, TakesTimeInProportionToThePageHoweverHostileBothAre) {
    const QString flat = u"<p class='a b'>aa"_s.repeated(50'000);
    const QString deep = u"<div class=a>"_s.repeated(3000);
    const QString named = [] {
        QString text;
        for (int i = 0; i < 8000; ++i)
            text += u"<x-%1></x-%1>"_s.arg(i);
        return text;
    }();
    const QString value = u"<p title=\"%1\">%1"_s.arg(u"a"_s.repeated(1'000'000));
    const std::pair<QString, QString> cases[] = {
        {flat, u"p ~ p ~ p:nth-of-type(3n+1) ~ p"_s},
        {flat, u":has(~ p ~ p:last-child):not(p + p + p:nth-child(odd))"_s},
        {flat, u"p:has-text('"_s + u"a"_s.repeated(1000) + u"b')"_s},
        {deep, u".a "_s.repeated(400)},
        {deep, u".a:has(.a .a .a .b):not(.a .a > .b)"_s},
        {named, u"body > :nth-of-type(2), x-7 ~ x-9"_s},
        {value, u"[title*='"_s + u"a"_s.repeated(1000) + u"b'], p:has-text('"_s + u"a"_s.repeated(800) + u"b')"_s},
    };
    for (const auto& [page, selector] : cases) {
        const PageTree tree(page);
        const std::clock_t before = std::clock();
        Selector::Parse(selector).SelectAll(tree);
        EXPECT_LT(static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC, 2.0) << selector.left(80).toStdString();
    }
    // Each record in turn: together no more than some passes over the page.
    const PageTree tree(u"<div><b><a>x</a></b></div>"_s.repeated(50'000));
    const SelectorQuery fields(tree, Selector::Parse(u":scope > b a, :scope:nth-child(2n)"));
    const std::clock_t before = std::clock();
    size_t found = 0;
    for (const NodeIndex record : Selector::Parse(u"div").SelectAll(tree))
        found += fields.Within(record).size();
    EXPECT_EQ(found, 75'000U);
    EXPECT_LT(static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC, 2.0);
}

} // namespace
} // namespace Brindle
