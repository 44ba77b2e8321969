#include "EnginePage.h"
#include "SelectorSamples.h"
#include "page/Selector.h"

#include <gtest/gtest.h>

namespace Brindle {

using namespace Qt::StringLiterals;
namespace {

using Test::EnginePage;
using Test::SelectorSamples;

// Asks the engine for what each selector selects on a page: the "n" of each element, or its name.
constexpr auto askEngine = uR"(selectors => selectors.map(text => {
    try {
        return Array.from(document.querySelectorAll(text), e => e.getAttribute('n') ?? e.localName).join(' ');
    } catch (error) { return 'refused: ' + text; }
}))";

QString Selected(const PageTree& tree, const QString& selector) {
    QStringList numbers;
    for (const NodeIndex node : Selector::Parse(selector).SelectAll(tree))
        numbers.append((tree.HasAttribute(node, u"n") ? tree.Attribute(node, u"n") : tree.Name(node)).toString());
    return numbers.join(u' ');
}

TEST(Selectors, SelectWhatChromiumSelects) {
    EnginePage engine;
    SelectorSamples samples(41);
    int found = 0;
    for (int round = 0; round < 40; ++round) {
        const QString page = samples.Page();
        const PageTree tree(page);
        QStringList selectors;
        for (int i = 0; i < 100; ++i)
            selectors.append(samples.Selector(false).Text);
        ASSERT_TRUE(engine.Show(page));
        const QStringList answers = engine.Ask(askEngine, selectors);
        ASSERT_EQ(answers.size(), selectors.size());
        for (qsizetype i = 0; i < answers.size(); ++i) {
            EXPECT_EQ(Selected(tree, selectors[i]).toStdString(), answers[i].toStdString())
                << selectors[i].toStdString() << '\n'
                << page.toStdString();
            found += answers[i].isEmpty() ? 0 : 1;
        }
    }
    EXPECT_GT(found, 1000);
}

TEST(Selectors, AreReadAsChromiumReadsThem) {
    const QStringList selectors{u"#\\32 c"_s,
                                u".\\-"_s,
                                u"[title='x' i]"_s,
                                u"[ title = X ]"_s,
                                u"div/**/ /**/p"_s,
                                u"div>p+p"_s,
                                u"P"_s,
                                u"[title='\\78']"_s,
                                u"[lang=EN]"_s,
                                u"[Type^=B]"_s,
                                u"g[viewBox]"_s,
                                u"lineargradient"_s,
                                u"linearGradient"_s,
                                u"[xlink\\:href]"_s,
                                u"svg[xmlns]"_s,
                                u"[href]"_s,
                                u"p:NTH-CHILD(-n+2)"_s,
                                u":nth-child( n )"_s,
                                u":nth-child(+3)"_s,
                                u":nth-child(-2n- 1)"_s,
                                u"p:not(div p, .x)"_s,
                                u"template *"_s,
                                u":scope > body"_s,
                                u":first-child"_s,
                                u"[class~='']"_s,
                                u"[title^='']"_s,
                                u"[title|='']"_s,
                                u"a:nth-of-type(2)"_s};
    const QString page =
        u"<!doctype html><html n=h><body n=b><div n=1 id=2c class='- \u00e9'><p n=2 title=x lang=en>"
        "<p n=3 class=x type=button title><template n=4><p n=5></p></template></div><svg n=6 viewBox=v "
        "xmlns='http://www.w3.org/2000/svg'><g n=7 viewbox=v xlink:href=x type=Button></g><linearGradient "
        "n=8></linearGradient><a n=9></a></svg><lineargradient n=10></lineargradient><a n=11 "
        "xlink:href=x href=y></a><a n=12></a></body></html>"_s;
    EnginePage engine;
    ASSERT_TRUE(engine.Show(page));
    const PageTree tree(page);
    const QStringList answers = engine.Ask(askEngine, selectors);
    ASSERT_EQ(answers.size(), selectors.size());
    for (qsizetype i = 0; i < answers.size(); ++i)
        EXPECT_EQ(Selected(tree, selectors[i]).toStdString(), answers[i].toStdString()) << selectors[i].toStdString();
}

} // namespace
} // namespace Brindle
