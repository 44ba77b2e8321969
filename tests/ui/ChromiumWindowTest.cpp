// The window with the real Chromium engine on the demo directories.
#include "PrintTo.h"
#include "WindowFixture.h"
#include "browser/webengine/WebEngineStart.h"
#include "core/QtMessageLoop.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTcpServer>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

// An own process for every case: the engine is started once, and a window that is closed ends its message loop.
class ChromiumWindowTest : public testing::Test {
protected:
    Demo::DemoServer Server;
    QtMessageLoop Loop;
    std::unique_ptr<WindowRun> Run;

    void Open() {
        Server.Start();
        Loop.SetPace(0.01);
        Run = std::make_unique<WindowRun>(Loop, SitesFile::Parse(Server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters()),
                                          CreateWebEngineBrowser);
        Run->Show();
        // The engine's first page takes it some hundred milliseconds, which are none at this pace.
        ASSERT_TRUE(Run->Until([this] { return !Run->Window->ewbMain().Busy(); }));
    }
    void OpenResults(QStringView code, int layout = 1) {
        Run->ChooseSite(code.toString(), Server);
        ASSERT_TRUE(Run->GoTo(Server.FirstResultPage(code, layout)));
    }
    bool Idle() const { return !Run->Window->Driver().Running() && !Run->Window->State().Parsing; }
    void Harvest() {
        Run->Click(u"btnStart");
        ASSERT_TRUE(Run->Until([this] { return Idle(); }, 120));
    }
    // Closes the window when the condition holds and destroys it, and expects that to be quick whatever goes on.
    void ExpectQuickEnd(const std::function<bool()>& closeWhen) {
        QElapsedTimer taken;
        Run->When(closeWhen, [&] {
            taken.start();
            Run->Window->close();
        });
        ASSERT_TRUE(Run->Until([this] { return !Run->Window->isVisible() && !Run->Window->Driver().Running(); }, 30));
        Run->Window.reset();
        EXPECT_LT(taken.elapsed(), 500);
    }
};

struct Site {
    QStringView Code;
    int Layout;
    const char16_t* EndText = u"Finished.";
};

void PrintTo(const Site& site, std::ostream* out) {
    *out << site.Code.toString().toStdString() << '/' << site.Layout;
}

class ChromiumHarvestTest : public ChromiumWindowTest, public testing::WithParamInterface<Site> {};

TEST_P(ChromiumHarvestTest, ListsEveryPlantedLead) {
    Open();
    const auto& [code, layout, endText] = GetParam();
    OpenResults(code, layout);
    Harvest();
    EXPECT_EQ(Run->ShownLeads(), Server.PlantedLeads(code, layout));
    EXPECT_EQ(Run->Panel(0), QString::fromUtf16(endText));
    EXPECT_EQ(Run->Panel(1), u"%1 items listed"_s.arg(Run->Window->Leads().Count()));
    // The last page tells of itself until it is whole, which the harvest need not wait for.
    EXPECT_TRUE(Run->Until([this] { return Run->Control<QProgressBar>(u"MainGauge")->value() == 0; }, 20));
}

// One site of each way of turning pages. Pagine-mail ends by going back to its first page, without a word.
INSTANTIATE_TEST_SUITE_P(Sites, ChromiumHarvestTest,
                         testing::Values(Site{SiteCode::UsYellowPages, 2}, Site{SiteCode::YellowPagesCanada, 1},
                                         Site{SiteCode::Canada411, 1}, Site{SiteCode::PagineMail, 1, u""},
                                         Site{SiteCode::Virgilio, 1}),
                         [](const auto& info) {
                             return info.param.Code.toString().toStdString() + '_' + std::to_string(info.param.Layout);
                         });

TEST_F(ChromiumWindowTest, SelectsDeletesAndHarvestsAgain) {
    Open();
    OpenResults(SiteCode::YellowPagesCanada);
    const QString firstPage = Run->Window->ewbMain().LocationAddress();
    Harvest();
    const auto all = static_cast<qsizetype>(Server.PlantedLeads(SiteCode::YellowPagesCanada).size());
    ASSERT_EQ(Run->Window->Leads().Count(), all);
    Run->Items().selectRow(2);
    Run->Click(u"btnRDelete");
    EXPECT_EQ(Run->Panel(1), u"%1 items listed"_s.arg(all - 1));
    // Only what was deleted is found again.
    ASSERT_TRUE(Run->GoTo(firstPage));
    Harvest();
    EXPECT_EQ(Run->Window->Leads().Count(), all);
    Run->Click(u"btnRDeleteAll");
    EXPECT_EQ(Run->Window->Leads().Count(), 0);
    ASSERT_TRUE(Run->GoTo(firstPage));
    Harvest();
    EXPECT_EQ(Run->ShownLeads(), Server.PlantedLeads(SiteCode::YellowPagesCanada));
}

TEST_F(ChromiumWindowTest, StopsInTheMiddleAndGoesOn) {
    Open();
    OpenResults(SiteCode::YellowPagesCanada);
    const QString firstPage = Run->Window->ewbMain().LocationAddress();
    Run->Click(u"btnStart");
    bool stopped = false;
    Run->When([this] { return Run->Window->Leads().Count() > 0; },
              [&] {
                  Run->Click(u"btnStop");
                  stopped = true;
              });
    ASSERT_TRUE(Run->Until([&] { return stopped && Idle(); }, 10));
    const auto all = static_cast<qsizetype>(Server.PlantedLeads(SiteCode::YellowPagesCanada).size());
    EXPECT_LT(Run->Window->Leads().Count(), all);
    ASSERT_TRUE(Run->GoTo(firstPage));
    Harvest();
    EXPECT_EQ(Run->Window->Leads().Count(), all);
}

TEST_F(ChromiumWindowTest, ChangesTheSiteInTheMiddle) {
    Open();
    OpenResults(SiteCode::YellowPagesCanada);
    Run->Click(u"btnStart");
    bool changed = false;
    Run->When([this] { return Run->Window->Leads().Count() > 0; },
              [&] {
                  Run->ChooseSite(SiteCode::Canada411.toString(), Server);
                  changed = true;
              });
    ASSERT_TRUE(Run->Until([&] { return changed && Idle(); }, 30));
    const qsizetype before = Run->Window->Leads().Count();
    ASSERT_TRUE(Run->GoTo(Server.FirstResultPage(SiteCode::Canada411)));
    Harvest();
    EXPECT_EQ(Run->Window->Leads().Count() - before,
              static_cast<qsizetype>(Server.PlantedLeads(SiteCode::Canada411).size()));
}

// The pages of the first round, from the first look at the page to the next page: Stop is pressed at every tenth of a
// second of it, each time in a harvest of its own. The clock of the waits goes twenty times as fast.
class ChromiumStopTest : public ChromiumWindowTest, public testing::WithParamInterface<QStringView> {};

TEST_P(ChromiumStopTest, EndsAtAnyMoment) {
    constexpr double pace = 0.05;
    constexpr qint64 longestWait = 7000;
    Open();
    OpenResults(GetParam());
    TfrmMain& window = *Run->Window;
    window.Options().eRandom = u"0"_s; // the fetches of details pages would make the round minutes long
    EmbeddedBrowser& browser = window.ewbMain();
    const QString firstPage = browser.LocationAddress();
    const auto waitFor = [this](qint64 ms) {
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < ms)
            Loop.WaitForMessage(ms - waited.elapsed());
    };
    int presses = 0;
    int slow = 0; // at this moment
    bool roundOver = false;
    double moment = 0; // of the loop's clock; where a round is long, its later moments lie further apart
    while (!roundOver && presses < 150) {
        Run->Click(u"btnRDeleteAll");
        Loop.SetPace(0.01);
        if (browser.LocationAddress() != firstPage || browser.Busy()) {
            ASSERT_TRUE(Run->GoTo(firstPage));
        }
        Loop.SetPace(pace);
        Run->Click(u"btnStart");
        ASSERT_TRUE(window.State().Parsing) << "Get Data is dead behind press " << presses;
        QElapsedTimer taken;
        // In the middle of whatever wait the harvest is in then.
        QTimer::singleShot(static_cast<int>(moment * pace), Qt::PreciseTimer, &window, [&] {
            const QString shown = browser.LocationAddress();
            roundOver = (shown != firstPage && shown.startsWith(u"http")) || !window.Driver().Running();
            taken.start();
            Run->Click(u"btnStop");
        });
        ASSERT_TRUE(Run->Until([&] { return taken.isValid() && !window.Driver().Running(); }, 20)) << presses;
        const bool late = taken.elapsed() > static_cast<qint64>(longestWait * pace) + 500;
        EXPECT_FALSE(window.State().Parsing);
        const QString left = browser.LocationAddress();
        const qsizetype leads = window.Leads().Count();
        waitFor(40);
        EXPECT_FALSE(window.Driver().Running());
        // The page of before, or the empty one between two pages, may still be coming up; no further one does.
        const QString now = browser.LocationAddress();
        EXPECT_TRUE(now == left || now == firstPage || now == u"about:blank")
            << "another page was loaded behind press " << presses << ": " << now.toStdString();
        EXPECT_EQ(window.Leads().Count(), leads);
        EXPECT_NE(Run->Panel(0), u"Loading the page..."_s);
        EXPECT_TRUE(Run->Control<StatusBarView>(u"StatusBar")->Activity().isEmpty());
        ++presses;
        // A machine that is busy with other things is late now and then, but not at the same moment each time.
        slow = late ? slow + 1 : 0;
        ASSERT_LT(slow, 4) << "Stop takes too long " << moment << " ms behind Get Data";
        if (late)
            roundOver = false;
        else
            moment = std::max(moment + 100, moment * 1.03);
    }
    EXPECT_TRUE(roundOver);
    RecordProperty("presses", presses);

    Run->Click(u"btnRDeleteAll");
    Loop.SetPace(0.01);
    ASSERT_TRUE(Run->GoTo(firstPage));
    Harvest();
    EXPECT_EQ(Run->ShownLeads(), Server.PlantedLeads(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Sites, ChromiumStopTest,
                         testing::Values(SiteCode::UsYellowPages, SiteCode::YellowPagesCanada, SiteCode::Canada411,
                                         SiteCode::PagineBianche, SiteCode::PagineMail, SiteCode::InfobelItaly,
                                         SiteCode::Virgilio, SiteCode::Trovanumeri),
                         [](const auto& info) { return info.param.toString().toStdString(); });

TEST_F(ChromiumWindowTest, SaysWhatThePageCannotDoAndReloadsIt) {
    Open();
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    const QString nobody = u"http://127.0.0.1:%1/"_s.arg(closed.serverPort());
    closed.close();
    Run->GoTo(nobody);
    EXPECT_TRUE(Run->Until([&] { return Run->Notice().startsWith(nobody); })) << Run->Notice().toStdString();
    auto* const reload = Run->Control<NoticeBar>(u"Notice")->findChild<QPushButton*>();
    EXPECT_FALSE(reload->isHidden());

    OpenResults(SiteCode::YellowPagesCanada);
    EXPECT_EQ(Run->Notice(), QString());
    Run->Window->ewbMain().Navigate(u"chrome://crash"_s);
    ASSERT_TRUE(Run->Until([&] { return Run->Notice().contains(u"process has ended"); }));
    reload->click();
    EXPECT_TRUE(Run->Until([&] { return Run->Notice().isEmpty() && !Run->Window->ewbMain().Busy(); }));
}

// Where the harvest stands when the window is closed.
enum class Moment { PageWait, NextPageWait, Fetch, PageRead, PageLoad };

void PrintTo(Moment moment, std::ostream* out) {
    constexpr std::array names{"PageWait", "NextPageWait", "Fetch", "PageRead", "PageLoad"};
    *out << names.at(static_cast<size_t>(moment));
}

class ChromiumCloseTest : public ChromiumWindowTest, public testing::WithParamInterface<Moment> {};

TEST_P(ChromiumCloseTest, EndsAtOnce) {
    Open();
    OpenResults(GetParam() == Moment::Fetch ? SiteCode::Canada411 : SiteCode::YellowPagesCanada);
    Loop.SetPace(1.0); // real waits, to be cut short
    TfrmMain& window = *Run->Window;
    switch (GetParam()) {
    case Moment::PageWait: // a tick has seen the page and lets it settle
        Run->Click(u"btnStart");
        return ExpectQuickEnd([&] { return !window.State().Parsing; });
    case Moment::Fetch: // details pages are fetched, with a delay before each
        window.Options().eRandom = u"100"_s;
        [[fallthrough]];
    case Moment::NextPageWait:
        Run->Click(u"btnStart");
        return ExpectQuickEnd([&] { return window.State().ExtractedNum > 0 || !Run->Panel(0).isEmpty(); });
    case Moment::PageRead: // the question reaches the engine, the answer is not awaited
        QTimer::singleShot(0, &window, [&] { window.ewbMain().BodyOuterHtml(MarkupForm::Standard); });
        return ExpectQuickEnd([] { return true; });
    case Moment::PageLoad:
        window.ewbMain().Refresh();
        return ExpectQuickEnd([] { return true; });
    }
}

INSTANTIATE_TEST_SUITE_P(Moments, ChromiumCloseTest,
                         testing::Values(Moment::PageWait, Moment::NextPageWait, Moment::Fetch, Moment::PageRead,
                                         Moment::PageLoad));

} // namespace
} // namespace Brindle::Test

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    Brindle::PrepareWebEngine();
    const QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
