#include "DemoFixture.h"

#include <algorithm>

using namespace Qt::StringLiterals;

// Directories that nobody wrote an adapter for, and such as a recipe describes: whole harvests of the modern demo
// directories.

namespace Brindle::Test {
namespace {

class AnyDirectoryTest : public DemoFixture {
protected:
    Outcome HarvestAny(const QStringList& options) const {
        return RunCli(
            QStringList{u"harvest"_s, u"--sites"_s, SitesFileName(), u"--pace"_s, u"0"_s, u"--format"_s, u"jsonl"_s} +
            options);
    }
    static Demo::ModernSite SiteNamed(QStringView code) {
        for (const Demo::ModernSite& site : Server().ModernSites())
            if (site.Code == code)
                return site;
        return {};
    }
};

QStringList FieldOf(const std::vector<Lead>& leads, QString Lead::*field) {
    QStringList values;
    for (const Lead& lead : leads)
        values.append(lead.*field);
    return values;
}

TEST_F(AnyDirectoryTest, WalksEveryModernDirectory) {
    int walked = 0;
    for (const Demo::ModernSite& site : Server().ModernSites()) {
        if (site.NeedsScripts || site.Secure)
            continue;
        ++walked;
        const Outcome outcome = HarvestAny({u"--site"_s, u"AUTO"_s, u"--start"_s, site.Start});
        ASSERT_EQ(outcome.Status, 0) << site.Code.toStdString() << outcome.Err.toStdString();
        const std::vector<Lead> found = LeadsOfJsonl(outcome.Out);
        const std::vector<Lead> planted = Server().ModernLeads(site.Code);
        EXPECT_EQ(FieldOf(found, &Lead::Name), FieldOf(planted, &Lead::Name)) << site.Code.toStdString();
        EXPECT_EQ(FieldOf(found, &Lead::DetailsLink), FieldOf(planted, &Lead::DetailsLink)) << site.Code.toStdString();
        EXPECT_EQ(FieldOf(found, &Lead::Phone), FieldOf(planted, &Lead::Phone)) << site.Code.toStdString();
    }
    EXPECT_GE(walked, 6);
}

TEST_F(AnyDirectoryTest, HarvestsByARecipeFromASearchAndReportsDrift) {
    const Demo::ModernSite site = SiteNamed(u"demo-microdata");
    ASSERT_FALSE(site.SearchAddress.isEmpty());
    const QByteArray recipe = "name = \"Demo\"\nhome = \"" + site.Start.toUtf8() + "\"\nsearch = \"" +
                              site.SearchAddress.toUtf8() + "\"\nnext = \"auto\"\n[list]\nrecords = \"structured\"\n";
    const QString file = Write(u"demo-recipe.toml"_s, recipe);
    const Outcome outcome = HarvestAny({u"--recipe"_s, file, u"--what"_s, u"caf\u00E9"_s, u"--place"_s, u"Lyon"_s});
    ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    EXPECT_EQ(FieldOf(LeadsOfJsonl(outcome.Out), &Lead::Name), FieldOf(Server().ModernLeads(site.Code), &Lead::Name));

    const QString drifted = Write(u"drifted.toml"_s, recipe + "[taught]\nrecords = 20\n[taught.filled]\nFax = 20\n");
    const Outcome second = HarvestAny({u"--recipe"_s, drifted, u"--start"_s, site.Start, u"--quiet"_s});
    EXPECT_EQ(second.Status, 0);
    EXPECT_TRUE(second.Err.contains("fax: filled in 0 of")) << second.Err.toStdString();

    EXPECT_NE(HarvestAny({u"--recipe"_s, Write(u"AUTO.toml"_s, recipe), u"--start"_s, site.Start}).Status, 0);
}

TEST_F(AnyDirectoryTest, ReadsASavedPageAsAHarvestDoes) {
    const Demo::ModernSite site = SiteNamed(u"demo-microdata");
    const Outcome page = RunCli({u"fetch"_s, u"--sites"_s, SitesFileName(), u"--pace"_s, u"0"_s, site.Start});
    ASSERT_EQ(page.Status, 0) << page.Err.toStdString();
    const QString saved = Write(u"saved.html"_s, page.Out);
    const QString store = Write(u"leads.db"_s, {});
    for (const QStringList& details : {QStringList{}, QStringList{u"--details"_s}}) {
        const Outcome harvested = HarvestAny(
            QStringList{u"--site"_s, u"AUTO"_s, u"--max-pages"_s, u"1"_s, u"--start"_s, site.Start} + details);
        const Outcome parsed =
            RunCli(QStringList{u"parse"_s, u"--sites"_s, SitesFileName(), u"--pace"_s, u"0"_s, u"--site"_s, u"AUTO"_s,
                               u"--store"_s, store, u"--url"_s, site.Start, u"--format"_s, u"jsonl"_s} +
                   details + QStringList{saved, saved});
        ASSERT_EQ(parsed.Status, 0) << parsed.Err.toStdString();
        EXPECT_FALSE(parsed.Out.isEmpty());
        EXPECT_EQ(parsed.Out, harvested.Out);
    }
    const Outcome kept = RunCli({u"leads"_s, u"--store"_s, store, u"--format"_s, u"jsonl"_s});
    EXPECT_FALSE(kept.Out.isEmpty()) << kept.Err.toStdString();
}

TEST_F(AnyDirectoryTest, SaysThatAPageIsNoList) {
    const Outcome outcome = HarvestAny({u"--site"_s, u"AUTO"_s, u"--start"_s, Server().Businesses() + u"/"_s});
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_TRUE(outcome.Out.isEmpty());
    EXPECT_EQ(outcome.Err.count("brindle-cli: "), 1) << outcome.Err.toStdString();
}

} // namespace
} // namespace Brindle::Test
