// The parts of the window that need no window.
#include "HarvestBench.h"
#include "PrintTo.h"
#include "ScriptedBrowser.h"
#include "WindowFixture.h"
#include "ui/AccessKeys.h"
#include "ui/BrowserEmulation.h"
#include "ui/LeadTableModel.h"
#include "ui/ProgramOptions.h"
#include "ui/StatusBarView.h"
#include "ui/UpdateCheck.h"
#include "ui/WrapRow.h"

#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

TEST(BrowserEmulationTest, FollowsTheStartOfTheVersion) {
    const std::pair<QStringView, quint32> cases[]{
        {u"", 11001},     {u"0", 11001},       {u"1", 11001},         {u"7.0", 11001},  {u"8.0", 8888},
        {u"9.0", 9999},   {u"9.0.8112", 9999}, {u"9.10", 9999},       {u"9.11", 11001}, {u"9.11.17763", 11001},
        {u"10.0", 10001}, {u"11.0", 11001},    {u"11.0.9600", 11001}, {u"12", 12001},   {u"13", 11001}};
    for (const auto& [version, value] : cases)
        EXPECT_EQ(EmulationValue(version), value) << version.toString().toStdString();

    ScriptedBrowser browser;
    RecordingPlatform system;
    SetIERegistryKey(u"8.0"_s, u"brindle.exe"_s, system, browser);
    EXPECT_EQ(browser.Calls, QStringList{u"agent Mozilla/4.0 (compatible; MSIE 8.0; Windows NT 6.0)"_s});
    EXPECT_EQ(system.Written[0], u"FEATURE_BROWSER_EMULATION|brindle.exe|8888"_s);
}

// A screen can be lower than the rows of a pane: they are scrolled then, and none of them is cut off.
TEST(ScrolledPaneTest, KeepsARowWithinReachAndFollowsItsPane) {
    QWidget window;
    auto* const pane = new PaneOfRows;
    auto* const column = new QVBoxLayout(pane);
    for (int row = 0; row < 40; ++row)
        column->addWidget(new QPushButton(u"Row %1"_s.arg(row), pane));
    pane->hide();
    auto* const area = new ScrolledPane(pane, &window);
    auto* const around = new QVBoxLayout(&window);
    around->addWidget(area);
    window.resize(300, 300);
    window.show();
    EXPECT_FALSE(area->isVisible());
    pane->show();
    EXPECT_TRUE(area->isVisible());
    area->setMinimumHeight(0);
    area->resize(300, 250);
    EXPECT_GE(pane->height(), column->minimumSize().height());
    EXPECT_EQ(area->verticalScrollBar()->maximum(), pane->height() - area->viewport()->height());
    EXPECT_LE(pane->width(), area->viewport()->width());
    pane->hide();
    EXPECT_FALSE(area->isVisible());
}

TEST(LeadTableModelTest, GivesTheLeadsOfAPageToTheViewTogether) {
    LeadList leads;
    LeadTableModel model(leads);
    QSignalSpy inserted(&model, &LeadTableModel::rowsInserted);
    for (int i = 0; i < 30; ++i)
        leads.Append({.Name = QString::number(i)});
    EXPECT_EQ(model.rowCount(), 0);
    model.ShowPending();
    EXPECT_EQ(inserted.size(), 1);
    EXPECT_EQ(model.rowCount(), 30);
    EXPECT_EQ(model.index(29, 1).data().toString(), u"29"_s);
    // A deletion with leads that the view does not know of yet.
    leads.Append({.Name = u"last"_s});
    const std::vector<qsizetype> rows{0, 29};
    leads.Remove(rows);
    EXPECT_EQ(model.rowCount(), 29);
    EXPECT_EQ(model.index(28, 1).data().toString(), u"last"_s);
    // Leads of a page that takes long come by themselves.
    leads.Append({.Name = u"late"_s});
    EXPECT_TRUE(inserted.wait());
    EXPECT_EQ(model.rowCount(), 30);
}

TEST(StatusBarViewTest, ScalesTheProgress) {
    StatusBarView bar;
    const auto* const gauge = bar.findChild<QProgressBar*>(u"MainGauge"_s);
    struct Case {
        qint64 Maximum, Position;
        double Share;
    };
    for (const Case& c : {Case{200, 50, 0.25},
                          {-1, 5000, 0},
                          {0, 1, 0},
                          {8'000'000'000, 4'000'000'000, 0.5},
                          {10, 50, 1},
                          {3000, 100, 0.0333}}) {
        bar.SetProgressMaximum(c.Maximum);
        bar.SetProgressPosition(c.Position);
        EXPECT_NEAR(static_cast<double>(gauge->value()) / gauge->maximum(), c.Share, 0.001) << c.Maximum;
    }
}

TEST(AccessKeysTest, TakesLettersInTurn) {
    QString taken = u"D"_s;
    QString keys;
    for (const QStringView caption : {u"Delete Selected", u"Stop", u"Delete All", u"Tous", u"Étage", u""}) {
        const QChar key = TakeAccessKey(caption.toString(), taken);
        keys += key.isNull() ? u'-' : key;
    }
    EXPECT_EQ(keys, u"STAOG-"_s);
}

TEST(StatusBarViewTest, AnActivityDoesNotWidenTheWindow) {
    StatusBarView bar;
    const int width = bar.minimumSizeHint().width();
    bar.ShowActivity(QString(300, u'x'));
    EXPECT_LE(bar.minimumSizeHint().width(), width + 20);
    EXPECT_EQ(bar.Activity().size(), 300);
}

TEST(ProgramOptionsTest, ReadsAndRefuses) {
    const ProgramOptions options = ParseProgramOptions(
        {u"--demo"_s, u"--browser"_s, u"static"_s, u"--settings"_s, u"a.dat"_s, u"--pace"_s, u"0.5"_s});
    EXPECT_TRUE(options.OnDemo);
    EXPECT_EQ(options.Browser, ProgramOptions::Engine::Static);
    EXPECT_EQ(options.SettingsFileName, u"a.dat"_s);
    EXPECT_EQ(options.Pace, 0.5);
    for (const QStringList& wrong : {QStringList{u"--site"_s},
                                     {u"--sites"_s},
                                     {u"page.html"_s},
                                     {u"--browser"_s, u"text"_s},
                                     {u"--pace"_s, u"2"_s},
                                     {u"--demo"_s, u"--sites"_s, u"a.ini"_s}})
        EXPECT_THROW(ParseProgramOptions(wrong), OptionError) << wrong.join(u' ').toStdString();
}

struct UpdateCase {
    const char16_t* Page;
    const char16_t* Said;
    bool Opened;
};

TEST(UpdateCheckTest, OffersANewerRelease) {
    const UpdateCase cases[]{
        {u"3.17\nhttp://publisher.test/get\n", u"new 3.17", true},
        {u"\n  3.16.1\r\n\r\nhttps://publisher.test/get", u"new 3.16.1", true},
        {u"3.16\nhttp://publisher.test/get", u"none", false},
        {u"3.16.0\nhttp://publisher.test/get", u"none", false},
        {u"3.9\nhttp://publisher.test/get", u"none", false},
        {u"<html><body>Sign in to the network", u"failed", false},
        {u"4.0\njavascript:alert(1)", u"failed", false},
        {u"", u"failed", false},
        {nullptr, u"failed", false},
    };
    for (const UpdateCase& c : cases) {
        HarvestBench bench(SiteCode::UsYellowPages);
        bench.Texts.Set(Message::UpdateNone, u"none"_s);
        bench.Texts.Set(Message::UpdateAvailable, u"new [VAR1]"_s);
        bench.Texts.Set(Message::UpdateFailed, u"failed"_s);
        const QString address = u"http://publisher.test/release"_s;
        if (c.Page)
            bench.Pages.Pages.insert(address, QString::fromUtf16(c.Page));
        RecordingPlatform system;
        UpdateCheck check({bench.Pages, bench.Texts, bench.Notices, bench.Status, system, bench.Loop}, address,
                          u"3.16"_s);
        check.Run(true);
        EXPECT_EQ(bench.Notices.Said, QStringList{QString::fromUtf16(c.Said)});
        EXPECT_EQ(bench.Status.Last(0), QString()); // which said that it is being asked
        EXPECT_EQ(system.Opened.size(), c.Opened ? 1 : 0);
        // At start-up only what is new is said.
        bench.Notices.Said.clear();
        check.Run(false);
        EXPECT_EQ(bench.Notices.Said.size(), c.Opened ? 1 : 0);
    }
}

TEST(UpdateCheckTest, ASlowServerIsWaitedForByWhoAskedForIt) {
    HarvestBench bench(SiteCode::UsYellowPages);
    bench.Pages.OnFetch = [&bench] { bench.Loop.RunUntil(bench.Loop.Now() + 20'000); };
    RecordingPlatform system;
    UpdateCheck check({bench.Pages, bench.Texts, bench.Notices, bench.Status, system, bench.Loop},
                      u"http://publisher.test/release"_s, u"3.16"_s);
    check.Run(true);
    EXPECT_EQ(bench.Pages.Disconnects, 0);
    check.Run(false);
    EXPECT_GT(bench.Pages.Disconnects, 0);
}

} // namespace
} // namespace Brindle::Test
