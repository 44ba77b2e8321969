#include "BusinessWebsites.h"
#include "DemoFixture.h"
#include "SitesFile.h"

#include <QDir>

namespace Brindle::Test {
namespace {

class CommandsTest : public DemoFixture {};

TEST_F(CommandsTest, SitesListsTheCatalogue) {
    const SitesFile sites = SitesFile::Load(SitesFileName());
    QString expected;
    for (const SiteEntry& site : sites.Sites)
        expected += site.Code + u'\t' + site.Base + u'\t' + site.Label + u'\n';
    const Outcome outcome = RunCli({QStringLiteral("sites"), QStringLiteral("--sites"), SitesFileName()});
    EXPECT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    EXPECT_EQ(outcome.Out, expected.toUtf8());
}

// Without --sites the deployment file beside the program is read, whatever the current folder is.
TEST_F(CommandsTest, SitesBesideTheProgram) {
    const Outcome outcome = RunCli({QStringLiteral("sites")});
    EXPECT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    EXPECT_EQ(outcome.Out.count('\n'), KnownSiteCodes().size());
}

// Pages that were saved one by one and read again are one harvest.
TEST_F(CommandsTest, ParseReadsSavedPagesAsOneHarvest) {
    for (const DemoSite& site :
         {DemoSite{QStringLiteral("KVPN002001"), 1}, DemoSite{QStringLiteral("KVPN002001"), 2}}) {
        QStringList files;
        for (int page = 1; page <= 3; ++page) {
            QString address = Server().FirstResultPage(site.Code, site.Layout);
            address.replace(QStringLiteral("page=1"), QStringLiteral("page=%1").arg(page));
            const Outcome fetched =
                RunCli({QStringLiteral("fetch"), QStringLiteral("--pace"), QStringLiteral("0"), address});
            ASSERT_EQ(fetched.Status, 0) << fetched.Err.toStdString();
            ASSERT_TRUE(fetched.Out.contains("<body")) << fetched.Out.toStdString();
            files.append(Write(QStringLiteral("page%1-%2.html").arg(site.Layout).arg(page), fetched.Out));
        }
        const Outcome outcome =
            RunCli(QStringList{QStringLiteral("parse"), QStringLiteral("--sites"), SitesFileName(),
                               QStringLiteral("--site"), site.Code, QStringLiteral("--pace"), QStringLiteral("0"),
                               QStringLiteral("--format"), QStringLiteral("jsonl")} +
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
        const QString slug = QStringLiteral("blue-door");
        const QString website = Demo::WebsiteOf(context, kind, slug);
        const Outcome outcome = RunCli({QStringLiteral("emails"), QStringLiteral("--pace"), QStringLiteral("0"),
                                        QStringLiteral("--set"), QStringLiteral("cExtractEmails=-1"), website});
        EXPECT_EQ(outcome.Status, 0) << website.toStdString() << ": " << outcome.Err.toStdString();
        EXPECT_EQ(outcome.Out, Demo::EmailsOn(kind, slug).toUtf8() + '\n') << website.toStdString();
    }
}

} // namespace
} // namespace Brindle::Test
