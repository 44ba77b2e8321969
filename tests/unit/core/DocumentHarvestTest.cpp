#include "HarvestBench.h"
#include "PrintTo.h"
#include "ScriptedBrowser.h"
#include "core/Errors.h"
#include "core/HarvestDriver.h"
#include "core/LeadListCommands.h"

#include <gtest/gtest.h>

// Directories that read whole documents. The test's pages are lines: "name|details link" is a record, "next ADDRESS"
// the next page, "more" a button that brings more.

namespace Brindle::Test {
namespace {

using namespace Qt::StringLiterals;

DocumentRecords ReadLines(const QString& html, const QString&) {
    DocumentRecords found;
    for (const QString& line : html.split(u'\n', Qt::SkipEmptyParts)) {
        if (line == u"beyond"_s)
            throw Failure(u"too deep"_s);
        if (line.startsWith(u"next "_s))
            found.NextPage = line.sliced(5);
        else if (line == u"more"_s)
            found.LoadMore = u"#more"_s;
        else
            found.Leads.push_back(
                {.Name = line.section(u'|', 0, 0), .Country = u"DE"_s, .DetailsLink = line.section(u'|', 1, 1)});
    }
    return found;
}

SiteAdapter AnySite() {
    SiteAdapter site;
    site.Code = u"ANY"_s;
    site.Links = Way::Modern;
    site.ReadDocument = ReadLines;
    site.IsSameSite = [](const QString& start, const QString& address) {
        return address.startsWith(u"http://a.test/"_s) && start.startsWith(u"http://a.test/"_s);
    };
    return site;
}

class Observer : public HarvestObserver {
public:
    void PageIncomplete(const QString&) override { ++Incomplete; }
    void PageRead() override { ++Pages; }
    void PagesRepeat(const QString& address) override { Repeated.append(address); }
    void PageGivenUp(const QString& address, const QString& reason) override {
        GivenUp.append(address + u' ' + reason);
    }
    void HarvestEnded() override { ++Ends; }
    int Incomplete = 0;
    int Pages = 0;
    int Ends = 0;
    QStringList Repeated;
    QStringList GivenUp;
};

class DocumentHarvest : public testing::Test {
protected:
    SiteAdapter site = AnySite();
    std::optional<HarvestBench> bench;
    ScriptedBrowser browser;
    Observer observer;
    std::optional<HarvestDriver> driver;
    const QString page1 = u"http://a.test/1"_s;
    const QString page2 = u"http://a.test/2"_s;

    void Start() {
        bench.emplace(std::span(&site, 1), u"ANY", 0);
        driver.emplace(bench->Job, browser, &observer);
        browser.Navigate(page1);
        browser.Calls.clear();
        driver->Start();
    }
    QStringList Names() const {
        QStringList names;
        for (const Lead& lead : bench->AllLeads())
            names.append(lead.Name);
        return names;
    }
    qsizetype Navigations() const {
        return std::count_if(browser.Calls.begin(), browser.Calls.end(),
                             [](const QString& call) { return call.startsWith(u"navigate http"_s); });
    }
};

TEST_F(DocumentHarvest, WalksFromPageToPageAndBringsEachBusinessOnce) {
    browser.Pages = {{page1, u"A|http://a.test/d/a\nB|http://a.test/d/b\nnext "_s + page2},
                     {page2, u"B again|https://www.a.test/d/b/\nC|http://a.test/d/c"_s}};
    Start();
    bench->Loop.RunToIdle();
    EXPECT_EQ(Names(), (QStringList{u"A"_s, u"B"_s, u"C"_s}));
    EXPECT_EQ(observer.Pages, 2);
    EXPECT_EQ(observer.Ends, 1);
    EXPECT_EQ(bench->State.ExtractedNum, 3);
    EXPECT_EQ(bench->State.CurrWay, Way::Modern);
    EXPECT_EQ(bench->Leads.At(0).Country, u"DE"_s); // what the reader found stays
    EXPECT_EQ(bench->Job.Counts.Records, 4);
    // Once deleted, the same business may be found again.
    const qsizetype row = 0;
    DeleteSelected(bench->Leads, std::span(&row, 1), u"ANY", bench->Texts, bench->Notices, bench->Loop, bench->Status);
    browser.Navigate(page1);
    driver->Start();
    bench->Loop.RunToIdle();
    EXPECT_EQ(Names(), (QStringList{u"B"_s, u"C"_s, u"A"_s}));
}

TEST_F(DocumentHarvest, APageIsCompleteWhenLoadingHasEndedAndTwoLooksSeeTheSame) {
    browser.Pages = {{page1, u"A|http://a.test/d/a"_s}};
    browser.IsBusy = true;
    Start();
    bench->Loop.RunUntil(5500);
    EXPECT_EQ(observer.Pages, 0);
    browser.IsBusy = false;
    browser.OnRead = nullptr;
    bench->Loop.Post(5800, [this] { browser.Pages[page1] += u"\nB|http://a.test/d/b"_s; }); // a script adds one
    bench->Loop.RunUntil(6500);
    EXPECT_EQ(observer.Pages, 0);
    bench->Loop.RunToIdle();
    EXPECT_EQ(Names(), (QStringList{u"A"_s, u"B"_s}));
    EXPECT_EQ(observer.Incomplete, 0);
}

TEST_F(DocumentHarvest, WaitsForRecordsOnTheFirstPageAndEndsOnANextPageWithoutAny) {
    browser.Pages = {{page1, QString()}};
    Start();
    bench->Loop.RunUntil(60'500);
    EXPECT_EQ(observer.Pages, 0);
    EXPECT_GT(observer.Incomplete, 50);
    EXPECT_TRUE(driver->Running());
    browser.Pages = {{page1, u"A|http://a.test/d/a\nnext "_s + page2}, {page2, QString()}};
    bench->Loop.RunToIdle();
    EXPECT_EQ(Names(), QStringList{u"A"_s});
    EXPECT_EQ(observer.Ends, 1);
}

TEST_F(DocumentHarvest, EndsWhereTheListGoesRoundOrLeavesTheSite) {
    struct Case {
        QString Second; // the page behind the first
        QStringList Found;
        bool Repeats;
        int Navigated;
    };
    const Case cases[] = {
        {u"A|http://a.test/d/a"_s, {u"A"_s}, true, 1},                                    // the same records
        {u"B|http://a.test/d/b\nnext http://a.test/1#top"_s, {u"A"_s, u"B"_s}, true, 2},  // an address seen before
        {u"B|http://a.test/d/b\nnext http://other.test/3"_s, {u"A"_s, u"B"_s}, false, 1}, // another site
    };
    for (const Case& c : cases) {
        observer = {};
        driver.reset();
        browser.Pages = {{page1, u"A|http://a.test/d/a\nnext "_s + page2}, {page2, c.Second}};
        browser.Pages.insert(u"http://a.test/1#top"_s, u"X|http://a.test/d/x"_s);
        Start();
        bench->Loop.RunToIdle(600'000);
        EXPECT_EQ(Names(), c.Found) << c.Second.toStdString();
        EXPECT_EQ(observer.Repeated.size(), c.Repeats ? 1 : 0) << c.Second.toStdString();
        EXPECT_EQ(Navigations(), c.Navigated) << c.Second.toStdString();
        EXPECT_FALSE(driver->Running());
    }
}

TEST_F(DocumentHarvest, LoadsMoreUntilThePageStaysTheSame) {
    browser.Pages = {{page1, u"A|\nB|\nmore"_s}}; // records that nothing but their place tells apart
    int more = 0;
    browser.OnLoadMore = [&] {
        if (++more == 3)
            return false;
        browser.Pages[page1].replace(u"more"_s, u"C%1|\nmore"_s.arg(more));
        return true;
    };
    Start();
    bench->Loop.RunToIdle(600'000);
    EXPECT_EQ(Names(), (QStringList{u"A"_s, u"B"_s, u"C1"_s, u"C2"_s}));
    EXPECT_EQ(browser.Calls.count(u"more #more"_s), 3);
    EXPECT_EQ(Navigations(), 0);
    EXPECT_TRUE(observer.Repeated.isEmpty());
}

// The page says that it is loading before the records are there.
TEST_F(DocumentHarvest, MoreThatComesLateIsWaitedFor) {
    browser.Pages = {{page1, u"A|\nmore"_s}};
    int asked = 0;
    browser.OnLoadMore = [&] {
        if (++asked > 1)
            return false;
        browser.Pages[page1] = u"A|\n\nmore"_s;
        bench->Loop.Post(bench->Loop.Now() + 1500, [this] { browser.Pages[page1] = u"A|\nB|\nmore"_s; });
        return true;
    };
    Start();
    bench->Loop.RunToIdle(60'000);
    EXPECT_EQ(Names(), (QStringList{u"A"_s, u"B"_s}));
    EXPECT_EQ(asked, 2);
}

TEST_F(DocumentHarvest, APageThatChangesWithoutMoreRecordsHasNoMore) {
    browser.Pages = {{page1, u"A|\nmore"_s}};
    int asked = 0;
    browser.OnLoadMore = [&] {
        browser.Pages[page1] = u"A|http://a.test/d/%1\nmore"_s.arg(++asked);
        return false;
    };
    Start();
    bench->Loop.RunToIdle(60'000);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(observer.Ends, 1);
}

TEST_F(DocumentHarvest, ReadsTheOwnPagesOfNewRecords) {
    site.ReadDetails = [](const QString& html, const QString&, Lead& lead) {
        if (html == u"beyond"_s)
            throw Failure(u"too deep"_s);
        lead.Phone = html;
    };
    browser.Pages = {
        {page1, u"A|http://a.test/d/a\nA|http://a.test/d/a\nB|http://a.test/d/b\nC|http://a.test/d/c\nD|"_s}};
    Start();
    bench->Pages.Pages = {{u"http://a.test/d/a"_s, u"030 1"_s}, {u"http://a.test/d/b"_s, u"beyond"_s}};
    bench->Loop.RunToIdle();
    EXPECT_EQ(Names(), (QStringList{u"A"_s, u"B"_s, u"C"_s, u"D"_s}));
    EXPECT_EQ(bench->Leads.At(0).Phone, u"030 1"_s);
    EXPECT_EQ(bench->Pages.Fetched.size(), 3); // one at a time, none twice
}

TEST_F(DocumentHarvest, SavesEachBusinessOnce) {
    browser.Pages = {{page1, u"A|http://a.test/d/a\nA|http://a.test/d/a\nnext "_s + page2},
                     {page2, u"B|http://a.test/d/b\nA|http://a.test/d/a"_s}};
    Start();
    bench->Options.cExportAutomatic = true;
    bench->Loop.RunToIdle();
    ASSERT_EQ(bench->Saver.Leads.size(), 2U);
    browser.Navigate(page1);
    driver->Start(); // the next harvest has a file of its own
    bench->Loop.RunToIdle();
    EXPECT_EQ(bench->Saver.Leads.size(), 4U);
}

TEST_F(DocumentHarvest, StopEndsItInTheWaitForTheNextPageAndWhileADocumentIsRead) {
    browser.Pages = {{page1, u"A|http://a.test/d/a\nnext "_s + page2}, {page2, u"B|http://a.test/d/b"_s}};
    Start();
    bench->Loop.Post(2500, [this] { driver->Stop(); }); // read at 2000, then a second on the empty page
    bench->Loop.RunToIdle(60'000);
    EXPECT_EQ(Names(), QStringList{u"A"_s});
    EXPECT_EQ(Navigations(), 0);
    EXPECT_EQ(bench->Status.Last(StatusPanel::Message), u"Finished"_s);

    browser.Pages = {{page1, u"beyond"_s}};
    driver.reset();
    Start();
    bench->Loop.Post(3500, [this] { driver->Stop(); });
    bench->Loop.RunToIdle(60'000);
    EXPECT_FALSE(driver->Running());
    EXPECT_FALSE(observer.GivenUp.isEmpty());
}

} // namespace
} // namespace Brindle::Test
