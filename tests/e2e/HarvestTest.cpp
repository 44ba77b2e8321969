#include "DemoFixture.h"
#include "core/SiteCatalogue.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

// A whole harvest of each directory in each layout, without and with the search for e-mails on the businesses'
// websites.
class HarvestTest : public DemoFixture, public testing::WithParamInterface<std::tuple<DemoSite, bool>> {};

TEST_P(HarvestTest, FindsEveryPlantedLead) {
    const auto& [site, emailSearch] = GetParam();
    QStringList more;
    if (emailSearch)
        more << u"--set"_s << u"cExtractEmails=-1"_s;
    const Outcome outcome = RunCli(Harvest(site, more));
    ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    ExpectSameLeads(LeadsOfJsonl(outcome.Out), Planted(site, emailSearch));
}

INSTANTIATE_TEST_SUITE_P(Sites, HarvestTest, testing::Combine(testing::ValuesIn(DemoSites()), testing::Bool()),
                         [](const auto& info) {
                             return CaseName(std::get<0>(info.param)) + (std::get<1>(info.param) ? "_emails" : "");
                         });

// A sales person's day: one directory after the other.
TEST_F(DemoFixture, HarvestsEveryDirectory) {
    QStringList codes;
    for (const DemoSite& site : DemoSites()) {
        if (site.Layout != 1)
            continue;
        codes.append(site.Code);
        const Outcome outcome = RunCli(Harvest(site, {}));
        ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
        ExpectSameLeads(LeadsOfJsonl(outcome.Out), Planted(site));
        EXPECT_FALSE(outcome.Err.contains("in a circle")) << outcome.Err.toStdString(); // the last page leads nowhere
    }
    EXPECT_EQ(codes.size(), 8);
}

// Words instead of an address, where the sites file knows the address of a search.
TEST_F(DemoFixture, HarvestsASearchByItsWords) {
    const QStringList words{u"--what"_s, u"caf\u00E9 & bar"_s, u"--place"_s, u"Forl\u00EC"_s};
    const QStringList harvest{u"harvest"_s, u"--sites"_s, SitesFileName(), u"--pace"_s, u"0"_s, u"--site"_s};
    const Outcome outcome = RunCli(harvest + QStringList{u"KVPE001001"_s, u"--format"_s, u"jsonl"_s} + words);
    EXPECT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    EXPECT_EQ(LeadsOfJsonl(outcome.Out).size(), Planted({u"KVPE001001"_s, 1}).size());
    const Outcome unknown = RunCli(harvest + QStringList{u"AUTO"_s} + words);
    EXPECT_EQ(unknown.Status, 1);
    EXPECT_TRUE(unknown.Err.contains("AUTO: no search address is known")) << unknown.Err.toStdString();
}

// The same with the directories in the program's own process, where the ports are others.
class OwnDemoTest : public DemoFixture, public testing::WithParamInterface<DemoSite> {};

QString WithoutPorts(QString text) {
    static const QRegularExpression port(u"127\\.0\\.0\\.1:\\d+"_s);
    return text.replace(port, u"demo"_s);
}

TEST_P(OwnDemoTest, HarvestsFromItsOwnProcess) {
    const DemoSite& site = GetParam();
    const Outcome outcome =
        RunCli({u"harvest"_s, u"--demo"_s, u"--site"_s, site.Code, u"--pace"_s, u"0"_s, u"--format"_s, u"jsonl"_s});
    ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    RecordProperty("milliseconds", static_cast<int>(outcome.Milliseconds));
    std::vector<Lead> found = LeadsOfJsonl(outcome.Out);
    std::vector<Lead> planted = Planted(site);
    for (auto* const leads : {&found, &planted})
        for (Lead& lead : *leads)
            for (int column = 0; column < FieldCount; ++column)
                lead.At(column) = WithoutPorts(lead.At(column));
    ExpectSameLeads(found, planted);
}

std::vector<DemoSite> FirstLayouts() {
    std::vector<DemoSite> sites = DemoSites();
    std::erase_if(sites, [](const DemoSite& site) { return site.Layout != 1; });
    return sites;
}

INSTANTIATE_TEST_SUITE_P(Sites, OwnDemoTest, testing::ValuesIn(FirstLayouts()),
                         [](const auto& info) { return info.param.Code.toStdString(); });

} // namespace
} // namespace Brindle::Test
