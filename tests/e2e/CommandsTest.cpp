#include "DemoFixture.h"
#include "core/SitesFile.h"
#include "demo/BusinessWebsites.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

class CommandsTest : public DemoFixture {};

TEST_F(CommandsTest, SitesListsTheCatalogue) {
    const SitesFile sites = SitesFile::Load(SitesFileName(), SiteAdapters());
    QString expected;
    for (const SiteEntry& site : sites.Sites)
        expected += site.Code + u'\t' + site.Base + u'\t' + site.Label + u'\n';
    expected += u"AUTO\t\tAny website\n"_s;
    const Outcome outcome = RunCli({u"sites"_s, u"--sites"_s, SitesFileName()});
    EXPECT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    EXPECT_EQ(outcome.Out, expected.toUtf8());
}

// Without --sites the deployment file beside the program is read, whatever the current folder is.
TEST_F(CommandsTest, SitesBesideTheProgram) {
    const Outcome outcome = RunCli({u"sites"_s});
    EXPECT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    EXPECT_EQ(outcome.Out.count('\n'), KnownSiteCodes().size() + 1); // and any website
}

// Pages that were saved one by one and read again are one harvest.
TEST_F(CommandsTest, ParseReadsSavedPagesAsOneHarvest) {
    for (const DemoSite& site : {DemoSite{u"KVPN002001"_s, 1}, DemoSite{u"KVPN002001"_s, 2}}) {
        QStringList files;
        for (int page = 1; page <= 3; ++page) {
            QString address = Server().FirstResultPage(site.Code, site.Layout);
            address.replace(u"page=1"_s, u"page=%1"_s.arg(page));
            const Outcome fetched = RunCli({u"fetch"_s, u"--pace"_s, u"0"_s, address});
            ASSERT_EQ(fetched.Status, 0) << fetched.Err.toStdString();
            ASSERT_TRUE(fetched.Out.contains("<body")) << fetched.Out.toStdString();
            files.append(Write(u"page%1-%2.html"_s.arg(site.Layout).arg(page), fetched.Out));
        }
        const Outcome outcome = RunCli(QStringList{u"parse"_s, u"--sites"_s, SitesFileName(), u"--site"_s, site.Code,
                                                   u"--pace"_s, u"0"_s, u"--format"_s, u"jsonl"_s} +
                                       files);
        ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
        std::vector<Lead> planted = Planted(site);
        planted.resize(site.Layout == 1 ? 2 + 3 * 22 : 3 * 20);
        ExpectSameLeads(LeadsOfJsonl(outcome.Out), planted);
    }
}

TEST_F(CommandsTest, EmailsOfAWebsite) {
    const Demo::DemoContext context{{}, {}, {}, Server().Businesses(), {}};
    using Demo::WebsiteKind;
    for (const WebsiteKind kind : {WebsiteKind::Plain, WebsiteKind::Start, WebsiteKind::Contact, WebsiteKind::Large}) {
        const QString slug = u"blue-door"_s;
        const QString website = Demo::WebsiteOf(context, kind, slug);
        const Outcome outcome = RunCli({u"emails"_s, u"--pace"_s, u"0"_s, website});
        EXPECT_EQ(outcome.Status, 0) << website.toStdString() << ": " << outcome.Err.toStdString();
        EXPECT_EQ(outcome.Out, Demo::EmailsOn(kind, slug).toUtf8() + '\n') << website.toStdString();
        EXPECT_EQ(RunCli({u"emails"_s, u"--pace"_s, u"0"_s, u"--set"_s, u"cExtractEmails=0"_s, website}).Out, "\n");
    }
}

} // namespace
} // namespace Brindle::Test
