#include "demo/DemoPage.h"

#include "PrintTo.h"

#include <gtest/gtest.h>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {
namespace {

TEST(DemoPage, EscapesTextsButNotMarkup) {
    const QString filled =
        Fill(u"<a title=\"{{name}}\" data-n={{n}}>{{name}}</a>{{more}}",
             {{u"name", u"A & \"B\" <{{n}}>"_s}, {u"n", 7}, {u"more", RawHtml{u"<b>{{name}}</b>"_s}}});
    EXPECT_EQ(filled, u"<a title=\"A &amp; &quot;B&quot; &lt;{{n}}&gt;\" data-n=7>"
                      "A &amp; &quot;B&quot; &lt;{{n}}&gt;</a><b>{{name}}</b>"_s);
}

TEST(DemoPage, NamesThePlaceholderThatNothingStandsFor) {
    try {
        Fill(u"{{nmae}}", {{u"name", u"x"_s}});
        FAIL();
    } catch (const std::logic_error& error) {
        EXPECT_NE(std::string(error.what()).find("nmae"), std::string::npos);
    }
}

} // namespace
} // namespace Brindle::Demo
