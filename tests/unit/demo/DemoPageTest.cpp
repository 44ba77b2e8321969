#include "DemoPage.h"

#include "PrintTo.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace Brindle::Demo {
namespace {

TEST(DemoPage, EscapesTextsButNotMarkup) {
    const QString filled = Fill(u"<a title=\"{{name}}\" data-n={{n}}>{{name}}</a>{{more}}",
                                {{u"name", QStringLiteral("A & \"B\" <{{n}}>")},
                                 {u"n", 7},
                                 {u"more", RawHtml{QStringLiteral("<b>{{name}}</b>")}}});
    EXPECT_EQ(filled, QStringLiteral("<a title=\"A &amp; &quot;B&quot; &lt;{{n}}&gt;\" data-n=7>"
                                     "A &amp; &quot;B&quot; &lt;{{n}}&gt;</a><b>{{name}}</b>"));
}

TEST(DemoPage, NamesThePlaceholderThatNothingStandsFor) {
    try {
        Fill(u"{{nmae}}", {{u"name", QStringLiteral("x")}});
        FAIL();
    } catch (const std::logic_error& error) {
        EXPECT_NE(std::string(error.what()).find("nmae"), std::string::npos);
    }
}

} // namespace
} // namespace Brindle::Demo
