// Teaching by pointing, in the whole window with the real Chromium engine on the modern demo directories.
#include "PrintTo.h"
#include "WindowFixture.h"
#include "adapters/Adapters.h"
#include "core/QtMessageLoop.h"

#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

class TeachTest : public testing::Test {
protected:
    Demo::DemoServer Server;
    QtMessageLoop Loop;
    std::unique_ptr<WindowRun> Run;

    void Open(const QString& start) {
        Loop.SetPace(0.01);
        Run = std::make_unique<WindowRun>(Loop, SitesFile::Parse(Server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters()),
                                          CreateWebEngineBrowser);
        Run->Show();
        ASSERT_TRUE(Run->Until([this] { return !Run->Window->ewbMain().Busy(); }));
        const auto* const sites = Run->Control<QComboBox>(u"cbxWebsites");
        Run->Choose(u"cbxWebsites", sites->findText(u"Any website"_s));
        ASSERT_TRUE(Run->GoTo(start));
    }
    QString Bar() const { return Run->Control<AnyPageBar>(u"AnyPageBar")->Said(); }
    bool SeesBusinesses(int count) {
        return Run->Until([&] { return Bar().startsWith(QString::number(count) + u" businesses"); }, 30);
    }
    TeachingDesk& Desk() { return Run->Window->Lessons(); }
    const PageOverlay& Overlay() const { return *Run->Control<PageOverlay>(u"PageOverlay"); }
    // Clicks the page where the mark of a field stands, as a user would, and says which field it is.
    bool PointAtMark(const QString& caption, Field field) {
        if (!Run->Until([&] { return MarkOf(caption).isValid(); }, 20))
            return false;
        bool asked = false;
        Desk().Lesson().AskField = [&](const std::vector<Field>&) {
            asked = true;
            return static_cast<int>(field);
        };
        QTest::mouseClick(Run->Control<PageOverlay>(u"PageOverlay"), Qt::LeftButton, {},
                          MarkOf(caption).center().toPoint());
        return Run->Until([&] { return asked; }, 20);
    }
    QRectF MarkOf(const QString& caption) const {
        for (const PageOverlay::Mark& mark : Overlay().Marks())
            if (mark.Caption == caption && Overlay().rect().contains(mark.Place.center().toPoint()))
                return mark.Place;
        return {};
    }
    bool Idle() const { return !Run->Window->Driver().Running() && !Run->Window->State().Parsing; }
};

TEST_F(TeachTest, ADirectoryIsTaughtSavedAndHarvested) {
    Server.Start();
    const Demo::ModernSite site = Server.ModernSites().front();
    Open(site.Start);
    ASSERT_TRUE(Run->Until([this] { return Bar().contains(u"businesses"); }, 30)) << Bar().toStdString();
    ASSERT_TRUE(Run->Until([this] { return !Overlay().Records().empty(); }, 20)) << "records are framed";
    const QString before = Run->Window->ewbMain().DocumentHtml();

    Run->Click(u"btnTeach");
    ASSERT_TRUE(Desk().Lesson().Active()) << Desk().Lesson().Problem().toStdString();
    const TeachSession& session = *Desk().Lesson().Session();
    EXPECT_FALSE(session.Reading().Records.empty());
    ASSERT_TRUE(PointAtMark(u"Business Name"_s, Field::BusinessName));
    EXPECT_FALSE(session.IsProposed(Field::BusinessName)) << session.Problem().toStdString();
    EXPECT_EQ(Run->Window->ewbMain().DocumentHtml(), before) << "nothing is drawn into the page";

    Run->Control<QLineEdit>(u"edtTeachName")->setText(u"My Town"_s);
    Run->Click(u"btnTeachSave");
    EXPECT_FALSE(Desk().Lesson().Active());
    EXPECT_EQ(Run->Window->State().CurrID, u"my-town"_s);
    Run->Click(u"btnStart");
    ASSERT_TRUE(Run->Until([this] { return Idle(); }, 120));
    const std::vector<Lead> planted = Server.ModernLeads(site.Code);
    const std::vector<Lead> shown = Run->ShownLeads();
    ASSERT_EQ(shown.size(), planted.size());
    for (size_t i = 0; i < shown.size(); ++i) {
        EXPECT_EQ(shown[i].Name, planted[i].Name);
        EXPECT_EQ(shown[i].Phone, planted[i].Phone);
        EXPECT_EQ(shown[i].DetailsLink, planted[i].DetailsLink);
    }
}

TEST_F(TeachTest, LeavingLeavesThePageAsItWas) {
    Server.Start();
    const Demo::ModernSite site = Server.ModernSites().front();
    Open(site.Start);
    ASSERT_TRUE(Run->Until([this] { return Bar().contains(u"businesses"); }, 30)) << Bar().toStdString();
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
    EXPECT_EQ(Run->Window->ewbMain().LocationAddress(), site.Start);
    EXPECT_EQ(Run->Window->ewbMain().DocumentHtml(), before);
}

// What was taught does not fit after the directory has changed its classes: the bar says so, mending brings it back.
TEST_F(TeachTest, ADirectoryThatChangedIsMended) {
    Server.Start();
    const Demo::ModernSite site = Server.ModernSites().front();
    Open(site.Start);
    ASSERT_TRUE(Run->Until([this] { return Bar().contains(u"businesses"); }, 30));
    Run->Click(u"btnTeach");
    const size_t records = Desk().Lesson().Session()->Reading().Records.size();
    Run->Control<QLineEdit>(u"edtTeachName")->setText(u"Changing"_s);
    Run->Click(u"btnTeachSave");
    ASSERT_EQ(Run->Window->State().CurrID, u"changing"_s);
    Server.ChangeClasses(site.Code, true);
    ASSERT_TRUE(Run->GoTo(site.Start));
    ASSERT_TRUE(Run->Until([this] { return !Bar().isEmpty(); }, 30));
    Run->Click(u"btnTeach");
    ASSERT_TRUE(Desk().Lesson().Active());
    EXPECT_EQ(Desk().Lesson().Session()->Reading().Records.size(), records);
    Run->Click(u"btnTeachSave");
    EXPECT_EQ(Run->Window->State().CurrID, u"changing"_s) << "under its own name";
}

} // namespace
} // namespace Brindle::Test
