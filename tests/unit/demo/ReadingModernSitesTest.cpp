#include "PrintTo.h"
#include "demo/DemoServer.h"
#include "discovery/AnyPage.h"

#include <QUrl>

#include <gtest/gtest.h>
#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {
namespace {

QString PageAt([[maybe_unused]] const DemoServer& server, const QString& address) {
    const QUrl url(address);
    httplib::Client client(QUrl(url.adjusted(QUrl::RemovePath | QUrl::RemoveQuery)).toString().toStdString());
#ifdef CPPHTTPLIB_OPENSSL_SUPPORT
    if (url.scheme() == u"https")
        client.set_ca_cert_path(server.AuthorityFile().toStdString());
#endif
    const httplib::Result answer = client.Get(url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority).toStdString());
    return answer ? QString::fromStdString(answer->body) : QString();
}

QString Level(const QString& text) {
    return QString(text).replace(u'\n', u' ').remove(u',').simplified();
}

// From page to page by the link that the reading names: every planted lead is found, each field as it stands there.
TEST(ReadingModernSites, FindsWhatIsPlanted) {
    DemoServer server;
    server.Start();
    for (const ModernSite& site : server.ModernSites()) {
        if (site.NeedsScripts)
            continue;
        SCOPED_TRACE(site.Code.toStdString());
        std::vector<Lead> found;
        QString address = site.Start;
        for (int page = 0; page < 5 && !address.isEmpty(); ++page) {
            const AnyPageReading reading = ReadAnyPage(PageTree(PageAt(server, address)), address);
            for (const PageRecord& record : reading.Records)
                found.push_back(record.Fields);
            address = reading.Next.Address;
        }
        const std::vector<Lead> planted = server.ModernLeads(site.Code);
        ASSERT_EQ(found.size(), planted.size());
        for (std::size_t i = 0; i < planted.size(); ++i) {
            const Lead& want = planted[i];
            const Lead& is = found[i];
            EXPECT_EQ(is.Name, want.Name);
            EXPECT_EQ(is.Phone, want.Phone) << want.Name.toStdString();
            EXPECT_EQ(is.DetailsLink, want.DetailsLink);
            EXPECT_EQ(is.Website, want.Website) << want.Name.toStdString();
            EXPECT_EQ(Level(is.FullAddress), Level(want.FullAddress));
            EXPECT_EQ(is.Street, want.Street);
            EXPECT_EQ(is.City, want.City);
            EXPECT_EQ(is.State, want.State);
            EXPECT_EQ(is.PostalCode, want.PostalCode);
            EXPECT_EQ(is.Category, want.Category) << want.Name.toStdString();
        }
    }
}

} // namespace
} // namespace Brindle::Demo
