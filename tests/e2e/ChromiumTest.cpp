#include "DemoFixture.h"

namespace Brindle::Test {
namespace {

// Whole harvests with the real engine, whose serialisation of the pages is what the adapters meet in the window.
class ChromiumTest : public DemoFixture, public testing::WithParamInterface<DemoSite> {};

TEST_P(ChromiumTest, FindsEveryPlantedLead) {
    const DemoSite& site = GetParam();
    const Outcome outcome = RunCli(Harvest(site, {QStringLiteral("--browser"), QStringLiteral("web")}), 280'000);
    ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    ExpectSameLeads(LeadsOfJsonl(outcome.Out), Planted(site));
}

INSTANTIATE_TEST_SUITE_P(Sites, ChromiumTest, testing::ValuesIn(DemoSites()),
                         [](const auto& info) { return CaseName(info.param); });

TEST_F(DemoFixture, GivesUpOnAPageThatNeverBecomesAResultsPage) {
    const Outcome outcome =
        RunCli({QStringLiteral("harvest"), QStringLiteral("--sites"), SitesFileName(), QStringLiteral("--site"),
                QStringLiteral("KVPN002001"), QStringLiteral("--pace"), QStringLiteral("0"),
                QStringLiteral("--browser"), QStringLiteral("web"), QStringLiteral("--patience"), QStringLiteral("2"),
                QStringLiteral("--start"), QString(Server().Businesses() + u"/plain/two-movers/")});
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_TRUE(outcome.ErrText().contains(QStringLiteral("ypgResultsTop"))) << outcome.Err.toStdString();
}

} // namespace
} // namespace Brindle::Test
