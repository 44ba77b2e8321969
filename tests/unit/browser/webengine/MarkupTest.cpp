#include "EnginePage.h"
#include "TagSoup.h"
#include "page/HtmlDocument.h"

#include <gtest/gtest.h>

namespace Brindle {

using namespace Qt::StringLiterals;
namespace {

using Test::EnginePage;
using Test::TagSoup;

// Parses each page as one that was loaded, scripts being on.
constexpr auto parsePages = uR"(pages => pages.map(text => {
    const frame = document.createElement('iframe');
    document.body.append(frame);
    const page = frame.contentDocument;
    page.open();
    page.write(text);
    page.close();
    const html = page.documentElement ? page.documentElement.outerHTML : '';
    frame.remove();
    return html;
}))";

TEST(Markup, IsParsedAsChromiumParsesIt) {
    EnginePage engine;
    std::mt19937 random(5);
    constexpr int rounds = 10;
    constexpr int pagesOfRound = 100;
    int same = 0;
    std::string others;
    for (int round = 0; round < rounds; ++round) {
        QStringList pages;
        for (int i = 0; i < pagesOfRound; ++i)
            pages.append(TagSoup(random, 2 + i % 20));
        ASSERT_TRUE(engine.Show(u"<!doctype html><body></body>"_s));
        const QStringList parsed = engine.Ask(parsePages, pages);
        ASSERT_EQ(parsed.size(), pages.size());
        for (int i = 0; i < pagesOfRound; ++i) {
            const QString own = HtmlDocument(pages[i]).DocumentHtml();
            if (own == parsed[i])
                ++same;
            else
                others +=
                    QString(pages[i] + u"\n  own:      " + own + u"\n  Chromium: " + parsed[i] + u'\n').toStdString();
        }
    }
    // In a thousand heaps of tags a few hold "</>" where it is text within a formula, or "<![CDATA[" in one's text.
    EXPECT_GE(same, rounds * pagesOfRound * 997 / 1000) << others;
}

} // namespace
} // namespace Brindle
