#include "DemoFixture.h"

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

// Whole harvests with the real engine, whose serialisation of the pages is what the adapters meet in the window.
class ChromiumTest : public DemoFixture, public testing::WithParamInterface<DemoSite> {};

TEST_P(ChromiumTest, FindsEveryPlantedLead) {
    const DemoSite& site = GetParam();
    const Outcome outcome = RunCli(Harvest(site, {u"--browser"_s, u"web"_s}), 280'000);
    ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    ExpectSameLeads(LeadsOfJsonl(outcome.Out), Planted(site));
}

INSTANTIATE_TEST_SUITE_P(Sites, ChromiumTest, testing::ValuesIn(DemoSites()),
                         [](const auto& info) { return CaseName(info.param); });

TEST_F(DemoFixture, GivesUpOnAPageThatNeverBecomesAResultsPage) {
    const Outcome outcome = RunCli({u"harvest"_s, u"--sites"_s, SitesFileName(), u"--site"_s, u"KVPN002001"_s,
                                    u"--pace"_s, u"0"_s, u"--browser"_s, u"web"_s, u"--patience"_s, u"2"_s,
                                    u"--start"_s, QString(Server().Businesses() + u"/plain/two-movers/")});
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_TRUE(outcome.ErrText().contains(u"ypgResultsTop"_s)) << outcome.Err.toStdString();
}

// Lists that grow by a button or by scrolling, and that no adapter knows.
TEST_F(DemoFixture, ReadsGrowingListsToTheirEnd) {
    int walked = 0;
    for (const Demo::ModernSite& site : Server().ModernSites()) {
        if (!site.NeedsScripts)
            continue;
        ++walked;
        const Outcome outcome =
            RunCli({u"harvest"_s, u"--sites"_s, SitesFileName(), u"--site"_s, u"AUTO"_s, u"--pace"_s, u"0.1"_s,
                    u"--browser"_s, u"web"_s, u"--format"_s, u"jsonl"_s, u"--start"_s, site.Start},
                   120'000);
        ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
        QStringList found;
        for (const Lead& lead : LeadsOfJsonl(outcome.Out))
            found.append(lead.Name);
        QStringList planted;
        for (const Lead& lead : Server().ModernLeads(site.Code))
            planted.append(lead.Name);
        EXPECT_EQ(found, planted) << site.Code.toStdString();
    }
    EXPECT_EQ(walked, 2);
}

} // namespace
} // namespace Brindle::Test
