#include "demo/DemoServer.h"

#include "PrintTo.h"
#include "SiteCodes.h"
#include "core/SitesFile.h"
#include "demo/DemoDirectory.h"

#include <QUrl>

#include <chrono>
#include <gtest/gtest.h>
#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {
namespace {

httplib::Result Get(const QString& address) {
    const QUrl url(address);
    httplib::Client client(url.host().toStdString(), url.port());
    const QByteArray target = url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority);
    return client.Get(target.toStdString());
}

TEST(DemoServer, ItsSitesFileIsCompleteAndEveryHomePageAnswers) {
    DemoServer server;
    server.Start();
    const SitesFile sites = SitesFile::Parse(server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters());
    EXPECT_TRUE(sites.Problems.empty());
    ASSERT_EQ(sites.Sites.size(), static_cast<std::size_t>(KnownSiteCodes().size()));
    for (const SiteEntry& site : sites.Sites) {
        const httplib::Result page = Get(site.Base + u'/');
        ASSERT_TRUE(page) << site.Code.toStdString();
        EXPECT_EQ(page->status, 200) << site.Code.toStdString();
    }
    EXPECT_EQ(Get(sites.MapBase + u"/maps?q=1+Rue,Canada")->status, 200);
}

TEST(DemoServer, EndsWhileAClientHoldsAConnection) {
    DemoServer server;
    server.Start();
    const QUrl url(server.Businesses());
    httplib::Client client(url.host().toStdString(), url.port());
    client.set_keep_alive(true);
    ASSERT_TRUE(client.Get("/plain/two-movers/"));
    server.Stop();
    EXPECT_FALSE(client.Get("/plain/two-movers/"));
    server.Start(); // and can be started anew
    EXPECT_TRUE(Get(server.Businesses() + u"/plain/two-movers/"));
}

// The link shows the host that it leads to, and survives being decoded once on the way.
TEST(DemoServer, ClicksLeadToTheirTarget) {
    DemoServer server;
    server.Start();
    const SiteCatalogue catalogue = SitesFile::Parse(server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters()).Catalogue();
    const SiteEntry& site = *catalogue.Find(SiteCode::YellowPagesCanada);
    const DemoContext context{site.Base, site.DetailsBase, u"http://" + site.RedirectHost, {}, {}};
    const QString target = site.DetailsBase + u"/details/a-b?from=list&at=1+1#top";
    const QString link = ClickLink(context, target);
    EXPECT_TRUE(link.contains(site.OwnHost) && link.contains(site.RedirectHost)) << link.toStdString();
    const httplib::Result answer = Get(link);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 302);
    EXPECT_EQ(answer->get_header_value("Location"), target.toStdString());
    EXPECT_EQ(Get(context.Clicks + u"/go?dest=http://elsewhere.example/")->status, 404);
}

TEST(DemoServer, UnknownSitesAndLayoutsHaveNothing) {
    DemoServer server;
    server.Start();
    EXPECT_TRUE(server.FirstResultPage(u"KVPN002001", 9).isEmpty());
    EXPECT_TRUE(server.PlantedLeads(u"KVPX000000").empty());
    EXPECT_EQ(server.LayoutCount(u"KVPX000000"), 0);
}

} // namespace
} // namespace Brindle::Demo
