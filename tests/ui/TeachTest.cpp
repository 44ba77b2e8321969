// Teaching by pointing, in the whole window with the real Chromium engine on the modern demo directories.
#include "PrintTo.h"
#include "TeachFixture.h"

#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

class TeachTest : public TeachFixture {
protected:
    Demo::ModernSite Site;

    void OpenDemo(QStringView code = u"demo-json-ld") {
        Site = StartSite(code);
        Open(Site.Start);
        ASSERT_TRUE(BarSays(u"businesses"_s)) << Bar().toStdString();
    }
};

TEST_F(TeachTest, LeavingLeavesThePageAsItWas) {
    OpenDemo();
    const QString before = Run->Window->ewbMain().DocumentHtml();
    Run->Click(u"btnTeach");
    ASSERT_TRUE(Desk().Lesson().Active());
    // A click on a link of the page goes nowhere.
    Desk().Lesson().AskField = [](const std::vector<Field>&) { return -1; };
    QTest::mouseClick(Run->Control<PageOverlay>(u"PageOverlay"), Qt::LeftButton, {}, QPoint(60, 60));
    QTest::qWait(300);
    ASSERT_TRUE(Desk().Lesson().Active()) << "pointing at nothing changes nothing";
    Run->Click(u"btnTeachLeave");
    EXPECT_FALSE(Desk().Lesson().Active());
    EXPECT_FALSE(Run->Control<TeachPanel>(u"TeachPanel")->isVisible());
    EXPECT_TRUE(Run->Items().isVisible());
    EXPECT_EQ(Run->Window->ewbMain().LocationAddress(), Site.Start);
    EXPECT_EQ(Run->Window->ewbMain().DocumentHtml(), before);
}

} // namespace
} // namespace Brindle::Test
