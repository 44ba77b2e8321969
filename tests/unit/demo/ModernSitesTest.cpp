#include "PrintTo.h"
#include "core/Lead.h"
#include "demo/DemoServer.h"
#include "demo/modern/ModernBusinesses.h"
#include "discovery/PostalAddress.h"
#include "toolkit/Phone.h"

#include <QSet>
#include <QUrl>

#include <algorithm>
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
    return answer && answer->status == 200 ? QString::fromStdString(answer->body) : QString();
}

class ModernSites : public testing::Test {
protected:
    ModernSites() { Server.Start(); }

    DemoServer Server;
};

TEST_F(ModernSites, ThereIsOneOfEachKind) {
    const std::vector<ModernSite> sites = Server.ModernSites();
    EXPECT_GE(sites.size(), 8u);
    QSet<QString> codes;
    QSet<QString> regions;
    for (const ModernSite& site : sites) {
        codes.insert(site.Code);
        regions.insert(site.Region);
        EXPECT_EQ(site.Secure, site.Start.startsWith(u"https://127.0.0.1:")) << site.Code.toStdString();
    }
    EXPECT_EQ(codes.size(), static_cast<qsizetype>(sites.size()));
    EXPECT_TRUE(regions.contains({u"DE"_s, u"FR"_s, u"ES"_s, u"PL"_s, u"JP"_s}));
    EXPECT_EQ(std::count_if(sites.begin(), sites.end(), [](const ModernSite& s) { return s.NeedsScripts; }), 2);
    EXPECT_TRUE(Server.ModernLeads(u"demo-unknown").empty());
}

// Every planted lead stands on one of the pages with each of its fields, and its own page shows the rest.
TEST_F(ModernSites, ThePagesShowWhatIsPlanted) {
    for (const ModernSite& site : Server.ModernSites()) {
        QString pages;
        for (int page = 1; page <= 3; ++page)
            pages += PageAt(Server, site.Start + u"?page=%1"_s.arg(page));
        if (site.NeedsScripts)
            for (int page = 2; page <= 4; ++page)
                pages += PageAt(Server, QUrl(site.Start).resolved(QUrl(u"/more?page=%1"_s.arg(page))).toString());
        pages.replace(u"&amp;"_s, u"&"_s).replace(u"&quot;"_s, u"\""_s).replace(u"&#39;"_s, u"'"_s);
        const std::vector<Lead> leads = Server.ModernLeads(site.Code);
        EXPECT_GE(leads.size(), 30u) << site.Code.toStdString();
        for (const Lead& lead : leads) {
            for (const QString& shown : {lead.Name, lead.Street, lead.City, lead.PostalCode, lead.Phone, lead.Website,
                                         lead.Category, QUrl(lead.DetailsLink).path().sliced(1)})
                EXPECT_TRUE(pages.contains(shown)) << site.Code.toStdString() << ": " << shown.toStdString();
            EXPECT_TRUE(lead.Email.isEmpty());
        }
        const std::vector<Lead> whole = Server.ModernLeads(site.Code, true);
        ASSERT_EQ(whole.size(), leads.size());
        const auto mailed =
            std::find_if(whole.begin(), whole.end(), [](const Lead& lead) { return !lead.Email.isEmpty(); });
        ASSERT_NE(mailed, whole.end());
        const QString own = PageAt(Server, mailed->DetailsLink);
        EXPECT_TRUE(own.contains(mailed->Email) && own.contains(mailed->Phone)) << site.Code.toStdString();
    }
}

// The invented numbers and addresses are ones that the country could have.
TEST_F(ModernSites, PhonesAndAddressesAreLikeReal) {
    for (const ModernSite& site : Server.ModernSites()) {
        QSet<QString> keys;
        for (const Lead& lead : Server.ModernLeads(site.Code)) {
            const std::optional<PhoneNumber> phone = ReadPhone(lead.Phone, site.Region);
            EXPECT_TRUE(phone && phone->Verdict == PhoneVerdict::Valid) << lead.Phone.toStdString();
            AddressHints hints;
            hints.Country = site.Region;
            const AddressParts parts = SplitAddress(lead.FullAddress, hints);
            EXPECT_EQ(parts, (AddressParts{lead.Street, lead.City, lead.State, lead.PostalCode, {}}))
                << lead.FullAddress.toStdString() << ": " << parts.Street.toStdString() << '|'
                << parts.City.toStdString();
            keys.insert(lead.DetailsLink);
            keys.insert(lead.Name + u'\n' + lead.Phone);
        }
        EXPECT_EQ(keys.size(), 2 * static_cast<qsizetype>(Server.ModernLeads(site.Code).size()));
    }
}

TEST_F(ModernSites, ClassesChangeAndChangeBack) {
    for (const ModernSite& site : Server.ModernSites()) {
        const QString before = PageAt(Server, site.Start);
        Server.ChangeClasses(site.Code, true);
        const QString changed = PageAt(Server, site.Start);
        EXPECT_NE(changed, before) << site.Code.toStdString();
        EXPECT_TRUE(changed.contains(u"class=\"ui-") || changed.contains(u" ui-")) << site.Code.toStdString();
        Server.ChangeClasses(site.Code, false);
        EXPECT_EQ(PageAt(Server, site.Start), before) << site.Code.toStdString();
    }
}

TEST_F(ModernSites, NobodyElseTrustsTheAuthority) {
    for (const ModernSite& site : Server.ModernSites())
        if (site.Secure) {
            const QUrl url(site.Start);
            httplib::Client stranger(QUrl(url.adjusted(QUrl::RemovePath)).toString().toStdString());
            EXPECT_FALSE(stranger.Get("/"));
            EXPECT_FALSE(PageAt(Server, site.Start).isEmpty());
        }
}

TEST(ManyLeads, ArePagesMadeAsTheyAreAskedFor) {
    DemoServer server;
    server.ServeManyLeads(1000);
    server.Start();
    const QString first = server.FirstResultPage(u"KVPE001005");
    const std::vector<Lead> leads = server.PlantedLeads(u"KVPE001005");
    ASSERT_EQ(leads.size(), 1000u);
    const QString last = PageAt(server, first + u"&pag=40");
    EXPECT_TRUE(last.contains(leads.back().Name) && last.contains(leads.back().Phone));
    EXPECT_FALSE(last.contains(u"Avanti"));
    EXPECT_TRUE(PageAt(server, first).contains(u"Avanti"));
}

} // namespace
} // namespace Brindle::Demo
