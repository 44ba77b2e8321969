#include "core/HarvestDriver.h"

#include "HarvestBench.h"
#include "PrintTo.h"
#include "ScriptedBrowser.h"
#include "core/Errors.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;
using Test::HarvestBench;
using Test::ScriptedBrowser;

// What the stand-in adapter does with a page; set by each test.
std::function<void(Harvest&, const QString&)> readPage;
std::function<TurnedPage(PageTurn&)> turnPage;

void ReadPage(Harvest& harvest, const QString& page) {
    if (readPage)
        readPage(harvest, page);
}

TurnedPage TurnPage(PageTurn& turn, const QString&) {
    return turnPage(turn);
}

// The directories as they are but for their readers.
const std::vector<SiteAdapter>& StandIns() {
    static const std::vector<SiteAdapter> directories = [] {
        std::vector<SiteAdapter> sites(SiteAdapters().begin(), SiteAdapters().end());
        for (SiteAdapter& site : sites) {
            for (SiteLayout& layout : site.Layouts)
                layout.Read = ReadPage;
            if (site.TurnPage)
                site.TurnPage = TurnPage;
        }
        return sites;
    }();
    return directories;
}

class Ending : public HarvestObserver {
public:
    void HarvestEnded() override { ++Ends; }
    void RoundEnded(bool nextPageLoaded) override { Rounds.push_back(nextPageLoaded); }
    void PageGivenUp(const QString& address, const QString& reason) override {
        GivenUp.append(address + u'|' + reason);
    }
    void PagesRepeat(const QString& address) override { Repeated.append(address); }
    int Ends = 0;
    QStringList GivenUp;
    QStringList Repeated;
    std::vector<bool> Rounds;
};

class Driving : public testing::Test {
protected:
    void SetUp() override {
        readPage = [this](Harvest&, const QString& page) { pagesRead.append(page); };
        turnPage = nullptr;
    }
    void TearDown() override {
        readPage = nullptr;
        turnPage = nullptr;
    }
    void Build(QStringView site, quint32 startTick = 0) {
        bench.emplace(StandIns(), site, 0, startTick);
        driver.emplace(bench->Job, browser, &ending);
        base = bench->Job.SelectedBase();
        page1 = base + u"/1";
        page2 = base + u"/2";
    }
    void Show(const QString& address, const QString& text) {
        browser.Pages.insert(address, text);
        if (browser.LocationAddress().isEmpty())
            browser.Navigate(address);
    }
    QStringList Navigations() const {
        QStringList list;
        for (const QString& call : browser.Calls)
            if (call.startsWith(u"navigate "))
                list.append(call.sliced(9));
        return list;
    }

    std::optional<HarvestBench> bench;
    ScriptedBrowser browser;
    Ending ending;
    std::optional<HarvestDriver> driver;
    QStringList pagesRead;
    QString base;
    QString page1;
    QString page2;
};

// A US result page: the list markers, links, and a next-page link when `next` is not empty.
QString UsPage(const QString& next, const QString& text = u"Next<"_s) {
    return u"<body BUSINESS-SERP <a href=\"/x\">x</a> "_s +
           (next.isEmpty() ? QString() : u"<a href=\""_s + next + u"\">"_s + text + u"/a>"_s) + u" footer-wrapper"_s;
}

TEST_F(Driving, WalksToTheLastPage) {
    Build(SiteCode::UsYellowPages);
    Show(page1, UsPage(u"/2"_s));
    Show(page2, UsPage({}));
    driver->Start();
    EXPECT_TRUE(bench->State.Parsing);
    bench->Loop.RunToIdle();
    EXPECT_EQ(pagesRead.size(), 2);
    EXPECT_EQ(Navigations(), (QStringList{page1, u"about:blank"_s, page2}));
    EXPECT_FALSE(bench->State.Parsing);
    EXPECT_EQ(ending.Ends, 1);
    EXPECT_EQ(bench->Status.Last(0), u"Finished"_s);
    EXPECT_EQ(bench->Status.Position, 0);
    // Two ticks of a second each, a second before each page is read, five seconds to turn the page.
    EXPECT_EQ(bench->Loop.Now(), 1000 + 1000 + 2000 + 3000 + 1000 + 1000);
    EXPECT_EQ(browser.LastForm, MarkupForm::Standard);
}

TEST_F(Driving, WaitsForAPageToBecomeComplete) {
    Build(SiteCode::UsYellowPages);
    Show(page1, u"<body business-serp"_s);
    driver->Start();
    bench->Loop.RunUntil(5500);
    EXPECT_TRUE(pagesRead.isEmpty());
    EXPECT_TRUE(bench->State.Parsing);
    Show(page1, UsPage({}));
    bench->Loop.RunToIdle();
    EXPECT_EQ(pagesRead.size(), 1);
    EXPECT_EQ(bench->Loop.Now(), 7000);
}

TEST_F(Driving, RefreshesAPageThatStaysIncompleteForThreeMinutes) {
    // The tick counter wraps round on the way.
    Build(SiteCode::UsYellowPages, 0xFFFFFFFFU - 100'000U);
    Show(page1, u"<body>"_s);
    driver->Start();
    bench->Loop.RunUntil(180'000);
    EXPECT_EQ(browser.Calls.count(u"refresh"_s), 0);
    bench->Loop.RunUntil(182'000);
    EXPECT_EQ(browser.Calls.count(u"refresh"_s), 1);
    bench->Loop.RunUntil(361'000);
    EXPECT_EQ(browser.Calls.count(u"refresh"_s), 1);
    bench->Loop.RunUntil(364'000);
    EXPECT_EQ(browser.Calls.count(u"refresh"_s), 2);
}

struct NextLink {
    QStringView Site;
    QStringView Page;
    QStringView Loaded; // empty: nothing is loaded; "BASE" stands for the site's base address
};

TEST_F(Driving, FindsTheNextPageLink) {
    const NextLink cases[] = {
        {SiteCode::UsYellowPages, u"<a href=\"/a\">1</a><a href=\"/b\">Next</a>", u"BASE/b"},
        {SiteCode::UsYellowPages, u"<a href=\"/a\">1</a><a HREF=\"/b\">Next</a>",
         u"BASE/a"}, // not seen as another link
        {SiteCode::UsYellowPages, u"<a href=\"/b?x=1&amp;y=2\">Next</a>", u"BASE/b?x=1&y=2"},
        {SiteCode::UsYellowPages, u"<a href=\"./b\">Next</a>", u"BASE/b"},
        {SiteCode::UsYellowPages, u"<a href=\"../b\">Next</a>", u"BASE./b"},
        {SiteCode::UsYellowPages, u"<a href=\"BASE/b\">Next</a>", u"BASE/b"},
        {SiteCode::UsYellowPages, u"<a href=\"http://other.test/b\">Next</a>", u"http://other.test/b"},
        {SiteCode::UsYellowPages, u"<a href=\"HTTP://other.test/b\">Next</a>", u"HTTP://other.test/b"},
        {SiteCode::UsYellowPages, u"<a href=\"https://other.test/b\">Next</a>", u"BASEhttps://other.test/b"},
        {SiteCode::UsYellowPages, u"<a href=\"/a\">next</a><a href=\"/b\">c</a>",
         u"BASE/a"}, // announced in any case, looked up in one
        {SiteCode::UsYellowPages, u"<a href=\"\">Next</a>", u""},
        {SiteCode::UsYellowPages, u"<a href=\"/b>Next</a>", u""}, // the link does not end
        {SiteCode::UsYellowPages, u"no link Next</a>", u""},
        {SiteCode::InfobelItaly, u"<A href=\"/it/italy/it/italy/p2\">successivo</A>", u"BASE/it/italy/p2"},
    };
    for (const NextLink& c : cases) {
        browser.Calls.clear();
        driver.reset();
        Build(c.Site);
        const auto withBase = [this](QStringView text) { return text.toString().replace(u"BASE"_s, base); };
        const bool infobel = c.Site == SiteCode::InfobelItaly;
        const QString page = (infobel ? u"<h1 class=pageh1>"_s : u"business-serp "_s) + withBase(c.Page) +
                             (infobel ? u" id=footer"_s : u" footer-wrapper"_s);
        browser.Pages = {{page1, page}};
        browser.Navigate(page1);
        browser.Calls.clear();
        driver->Start();
        bench->Loop.RunUntil(1000 + 1000 + 5000 + 5000 + 7000 + 500);
        driver->Stop();
        QStringList expected;
        if (!c.Loaded.isEmpty())
            expected = {u"about:blank"_s, withBase(c.Loaded)};
        if (c.Loaded.isEmpty()) {
            EXPECT_GE(pagesRead.size(), 2); // the same page is read again and again
        }
        EXPECT_EQ(Navigations(), expected) << c.Page.toUtf8().data();
        pagesRead.clear();
    }
}

TEST_F(Driving, ADisabledNextLinkEndsTheHarvest) {
    Build(SiteCode::InfobelItaly);
    Show(page1, u"<H1 class=Pageh1> <a href=\"/2\">successivo</A> <span class=\"ec disabled>SUCCESSIVO id=footer"_s);
    driver->Start();
    bench->Loop.RunToIdle();
    EXPECT_EQ(pagesRead.size(), 1);
    EXPECT_EQ(Navigations(), QStringList{page1});
    EXPECT_EQ(bench->Loop.Now(), 1000 + 1000 + 5000); // that site's pause after each page
    EXPECT_EQ(browser.LastForm, MarkupForm::Legacy);
}

// The waits of a round, with the first tick at 1000. A US page: a second until it is read at 2000, two on the blank
// page, three on the next one. Infobel Italy waits five seconds more behind its reading and seven behind the next page.
struct StopCase {
    QStringView Site;
    qint64 StopAt;
    int PagesRead;
    int NavigationsMade;
    bool ShowsFinished; // what is left in the status bar; Stop itself clears it
};
const StopCase stopCases[] = {
    {SiteCode::UsYellowPages, 500, 0, 0, false},  {SiteCode::UsYellowPages, 1500, 0, 0, false},
    {SiteCode::UsYellowPages, 3000, 1, 1, true},  {SiteCode::UsYellowPages, 5000, 1, 2, true},
    {SiteCode::InfobelItaly, 4000, 1, 0, true},   {SiteCode::InfobelItaly, 8000, 1, 1, true},
    {SiteCode::InfobelItaly, 10'000, 1, 2, true}, {SiteCode::InfobelItaly, 15'000, 1, 2, true},
};

class Stopping : public Driving {
protected:
    void StartOn(QStringView site) {
        browser.Calls.clear();
        pagesRead.clear();
        driver.reset();
        Build(site);
        const QString infobel = u"<h1 class=pageh1> <a href=\"/2\">successivo</A> id=footer"_s;
        const bool us = site == SiteCode::UsYellowPages;
        browser.Pages = {{page1, us ? UsPage(u"/2"_s) : infobel}, {page2, us ? UsPage(u"/3"_s) : infobel}};
        browser.Navigate(page1);
        browser.Calls.clear();
        driver->Start();
    }
};

TEST_F(Stopping, EndsTheHarvestInEveryWait) {
    for (const StopCase& c : stopCases) {
        StartOn(c.Site);
        bench->Loop.Post(c.StopAt, [this] { driver->Stop(); });
        bench->Loop.RunToIdle(60'000);
        EXPECT_EQ(pagesRead.size(), c.PagesRead) << c.StopAt;
        EXPECT_EQ(Navigations().size(), c.NavigationsMade) << c.StopAt;
        EXPECT_GE(browser.Calls.count(u"stop"_s), 2);
        EXPECT_EQ(bench->Pages.Disconnects, 2);
        EXPECT_FALSE(bench->State.Parsing) << c.StopAt;
        EXPECT_FALSE(driver->Running());
        EXPECT_EQ(bench->Status.Last(0), c.ShowsFinished ? u"Finished"_s : QString()) << c.StopAt;
    }
}

TEST_F(Stopping, TheStoppedRoundDoesNotGoOnWhenStartComesInTheSameWait) {
    for (const StopCase& c : stopCases) {
        StartOn(c.Site);
        bench->Loop.Post(c.StopAt, [this] { driver->Stop(); });
        bench->Loop.Post(c.StopAt + 200, [this] {
            browser.Pages.clear(); // the new harvest finds nothing, so whatever is read or loaded is the old round's
            bench->State.ExtractedNum = 5;
            driver->Start();
            EXPECT_TRUE(bench->State.Parsing);
        });
        bench->Loop.RunUntil(60'000);
        EXPECT_EQ(pagesRead.size(), c.PagesRead) << c.StopAt;
        EXPECT_EQ(Navigations().size(), c.NavigationsMade) << c.StopAt;
        EXPECT_TRUE(bench->State.Parsing && driver->Running()) << c.StopAt;
        EXPECT_FALSE(bench->State.ShouldStop);
        EXPECT_EQ(bench->State.ExtractedNum, 0);
    }
}

TEST_F(Stopping, WhileThePageIsReadOrRefreshed) {
    StartOn(SiteCode::UsYellowPages);
    // Messages are handled while the browser waits for a page whose script hangs; it gets nothing then.
    const auto pages = std::exchange(browser.Pages, {});
    browser.OnRead = [this] { driver->Stop(); };
    bench->Loop.RunUntil(20'000);
    EXPECT_TRUE(pagesRead.isEmpty());
    EXPECT_FALSE(bench->State.Parsing || driver->Running());
    browser.OnRead = nullptr;
    browser.Pages = pages;
    driver->Start();
    bench->Loop.RunUntil(23'000);
    EXPECT_EQ(pagesRead.size(), 1);

    StartOn(SiteCode::UsYellowPages);
    browser.Pages.clear();
    bench->Loop.Post(182'000, [this] { driver->Stop(); }); // refreshed at 181,000, then two seconds
    bench->Loop.RunUntil(200'000);
    EXPECT_EQ(browser.Calls.count(u"refresh"_s), 1);
    EXPECT_FALSE(bench->State.Parsing || driver->Running());
}

TEST_F(Stopping, AStopThatIsHandledWithTheStartIsNotLost) {
    Build(SiteCode::UsYellowPages);
    Show(page1, UsPage({}));
    bench->Loop.Post(0, [this] { driver->Stop(); });
    driver->Start();
    bench->Loop.RunToIdle();
    EXPECT_TRUE(pagesRead.isEmpty());
    EXPECT_FALSE(bench->State.Parsing || driver->Running());
}

TEST_F(Driving, TheNextPageIsThatOfTheSiteThatWasRead) {
    Build(SiteCode::InfobelItaly);
    Show(page1, u"<H1 class=Pageh1> <a href=\"/2\">successivo</A> id=footer"_s);
    Show(page2, u"<H1 class=Pageh1> id=footer"_s);
    bench->Loop.Post(8000, [this] { // on the blank page
        bench->State.SelectedEntry = u"http://other.test (Other)"_s;
        bench->State.CurrID = SiteCode::UsYellowPages.toString();
    });
    bench->Loop.Post(18'500, [this] { EXPECT_TRUE(ending.Rounds.empty()); }); // that site's long wait is made
    driver->Start();
    bench->Loop.RunUntil(19'000);
    EXPECT_EQ(ending.Rounds.size(), 1U);
    EXPECT_EQ(Navigations(), (QStringList{page1, u"about:blank"_s, page2}));
}

TEST_F(Driving, ACircleOfPagesEndsTheHarvest) {
    bool fresh = false;
    readPage = [&](Harvest& harvest, const QString& page) {
        pagesRead.append(page);
        harvest.Records.Add(fresh ? QString::number(pagesRead.size()) : page);
    };
    Build(SiteCode::UsYellowPages);
    Show(page1, UsPage(u"/2"_s));
    Show(page2, UsPage(u"/1"_s));
    driver->Start();
    bench->Loop.RunToIdle(3'600'000);
    EXPECT_EQ(pagesRead.size(), 3);
    EXPECT_EQ(ending.Repeated, QStringList{page1});
    EXPECT_EQ(ending.Ends, 1);
    EXPECT_EQ(bench->Status.Last(0), u"Finished"_s);

    // The next harvest knows nothing of this one. The same address with other records is another page.
    fresh = true;
    driver->Start();
    bench->Loop.RunUntil(bench->Loop.Now() + 60'000);
    EXPECT_GT(pagesRead.size(), 3 + 5);
    EXPECT_EQ(ending.Ends, 1);
    driver->Stop();

    // A round that loaded nothing is no circle: the page may still change.
    fresh = false;
    pagesRead.clear();
    browser.Pages = {{page1, UsPage(u""_s) + u" <a href=\"\">Next</a>"_s}};
    browser.Navigate(page1);
    driver->Start();
    bench->Loop.RunUntil(bench->Loop.Now() + 20'000);
    EXPECT_GT(pagesRead.size(), 5);
    EXPECT_EQ(ending.Repeated.size(), 1);
}

TEST_F(Driving, StopInsideTheAdapterEndsTheHarvestAfterIt) {
    Build(SiteCode::UsYellowPages);
    Show(page1, UsPage(u"/2"_s));
    readPage = [](Harvest& harvest, const QString&) { harvest.State.ShouldStop = true; };
    driver->Start();
    bench->Loop.RunToIdle();
    EXPECT_EQ(Navigations(), QStringList{page1});
    EXPECT_EQ(bench->Status.Last(0), u"Finished"_s);
}

TEST_F(Driving, StartIsRefusedWhileParsingAndZeroesTheCountersOtherwise) {
    Build(SiteCode::UsYellowPages);
    Show(page1, u"<body>"_s);
    bench->State.ExportedNum = 7;
    bench->State.ExtractedNum = 7;
    bench->State.MainCategory = u"Plumbers"_s;
    bench->State.ShouldStop = true;
    driver->Start();
    EXPECT_EQ(bench->State.ExportedNum, 0);
    EXPECT_EQ(bench->State.ExtractedNum, 0);
    EXPECT_TRUE(bench->State.MainCategory.isEmpty());
    EXPECT_FALSE(bench->State.ShouldStop);
    EXPECT_EQ(bench->Status.Last(2), u"0 items exported"_s);
    EXPECT_FALSE(bench->State.DateTimeVal.isEmpty());
    EXPECT_FALSE(bench->State.DateTimeVal.contains(u':') || bench->State.DateTimeVal.contains(u'/'));
    bench->State.ExtractedNum = 3;
    driver->Start();
    EXPECT_EQ(bench->State.ExtractedNum, 3);
}

TEST_F(Driving, TicksDoNotNest) {
    Build(SiteCode::UsYellowPages);
    Show(page1, UsPage({}));
    int depth = 0;
    int deepest = 0;
    int reads = 0;
    readPage = [&](Harvest& harvest, const QString&) {
        deepest = std::max(deepest, ++depth);
        // The first time the user presses Get Data once more while the adapter waits far longer than a tick.
        if (++reads == 1) {
            driver->Start();
            EXPECT_TRUE(harvest.State.Parsing);
            bench->Loop.RunUntil(bench->Loop.Now() + 10'000);
        }
        --depth;
    };
    driver->Start();
    bench->Loop.RunToIdle();
    EXPECT_EQ(deepest, 1);
    EXPECT_EQ(reads, 2); // the tick that fell due ran when the first had ended
    EXPECT_FALSE(bench->State.Parsing);
}

TEST_F(Driving, AnErrorInTheAdapterEndsThatPageOnly) {
    Build(SiteCode::UsYellowPages);
    Show(page1, UsPage(u"/2"_s));
    Show(page2, UsPage({}));
    readPage = [this](Harvest& harvest, const QString& page) {
        pagesRead.append(page);
        harvest.Leads.Append({.Name = u"kept"_s});
        throw IndexError(u"no such item"_s);
    };
    driver->Start();
    bench->Loop.RunToIdle();
    EXPECT_EQ(pagesRead.size(), 2);
    EXPECT_EQ(ending.GivenUp, (QStringList{page1 + u"|no such item"_s, page2 + u"|no such item"_s}));
    EXPECT_EQ(bench->Leads.Count(), 2);
}

TEST_F(Driving, ASiteMayTurnItsOwnPage) {
    Build(SiteCode::PagineMail);
    Show(page1, u"search-title <a>1</big></a><footer>"_s);
    int turns = 0;
    turnPage = [&](PageTurn&) {
        if (++turns == 3)
            return TurnedPage{.Clicked = true}; // a page is loaded, but it is the end
        return TurnedPage{.Clicked = turns == 1, .GoesOn = true, .OpenToStart = turns == 2};
    };
    bench->Loop.Post(2500, [this] { EXPECT_TRUE(bench->State.Parsing); });
    bench->Loop.Post(4500, [this] { EXPECT_FALSE(bench->State.Parsing); });
    driver->Start();
    bench->Loop.RunToIdle();
    EXPECT_EQ(pagesRead.size(), 3);
    EXPECT_EQ(ending.Rounds, (std::vector<bool>{true, false}));
    EXPECT_EQ(ending.Ends, 1);

    turnPage = [&](PageTurn& turn) {
        turn.Job.State.ShouldStop = true; // while it waits for the click to take effect
        return TurnedPage{.Clicked = true, .GoesOn = true};
    };
    driver->Start();
    bench->Loop.RunToIdle();
    EXPECT_EQ(pagesRead.size(), 4);
    EXPECT_EQ(bench->Status.Last(0), u"Finished"_s);
}

TEST_F(Driving, ThePauseBetweenPagesIsMadeWhenAPageIsGivenUpToo) {
    Build(SiteCode::InfobelItaly);
    readPage = [](Harvest&, const QString&) { throw IndexError(u"no such item"_s); };
    Show(page1, u"<H1 class=Pageh1> id=footer"_s);
    driver->Start();
    bench->Loop.RunToIdle();
    EXPECT_EQ(bench->Loop.Now(), 1000 + 1000 + 5000);
}

TEST_F(Driving, ProgressSetsAPercentageAgainstTheMaximum) {
    Build(SiteCode::UsYellowPages);
    struct Case {
        qint64 Progress, Maximum, Position;
    };
    for (const Case& c :
         {Case{50, 200, 25}, {1, 3, 33}, {2, 3, 67}, {0, 100, 0}, {1, 1, 0}, {-1, 100, 0}, {500, 100, 500}}) {
        Q_EMIT browser.ProgressChange(c.Progress, c.Maximum);
        EXPECT_EQ(bench->Status.Maximum, c.Maximum);
        EXPECT_EQ(bench->Status.Position, c.Position) << c.Progress;
    }
}

TEST(HarvestTimeStamp, IsFitForAFileNameInEveryLocale) {
    const QDateTime moment(QDate(2026, 11, 21), QTime(19, 5, 6));
    EXPECT_EQ(HarvestTimeStamp(moment, QLocale(u"es_ES"_s)), u"21-11-26 19-05-06"_s);
    EXPECT_EQ(HarvestTimeStamp(moment, QLocale(u"it_IT"_s)), u"21-11-26 19-05-06"_s);
    for (const QLocale& locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry)) {
        const QString stamp = HarvestTimeStamp(moment, locale);
        EXPECT_EQ(stamp, stamp.trimmed()) << locale.name().toStdString();
        for (const QChar c : QStringView(u":/()[]"))
            EXPECT_FALSE(stamp.contains(c)) << locale.name().toStdString() << ' ' << stamp.toStdString();
    }
}

} // namespace
} // namespace Brindle
