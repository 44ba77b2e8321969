#include "FetchingFixture.h"
#include "TlsServer.h"
#include "net/EmailHarvester.h"
#include "net/EmailSearch.h"
#include "net/UserAgent.h"

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;
using Test::Fetching;
using Test::Header;
using Test::Http;
using Test::LoopbackServer;
using Test::TestAuthority;
using Test::TlsServer;
using Test::TlsVersions;

class Modern : public Fetching {
protected:
    Modern() {
        bench.State.CurrWay = Way::Modern;
        fetcher.SetCaFile(authority.CaFile());
    }
    // As if the harvest had come to a page of a public server.
    void ComeFromThePublic() { bench.State.CurrPage = {u"http://directory.example/list"_s, u"198.41.0.4"_s}; }
    void ExpectRefusal(const QString& url) {
        EXPECT_FALSE(fetcher.DirectDownloadURL(url, page, false)) << url.toStdString();
        EXPECT_TRUE(fetcher.LastError().contains(u"may lead")) << fetcher.LastError().toStdString();
    }

    TestAuthority authority;
};

TEST_F(Modern, HttpsGoesTheOrdinaryWay) {
    TlsServer newest(authority, TlsVersions::Only13, Http("new"));
    TlsServer older(authority, TlsVersions::Only12, Http("older", "200 OK", "Set-Cookie: s=1; Path=/\r\n"));
    EXPECT_TRUE(fetcher.DownloadURL(newest.Base(), page, false)) << fetcher.LastError().toStdString();
    EXPECT_EQ(newest.LastVersion(), "TLSv1.3");
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(fetcher.DirectDownloadURL(older.Base(), page, true)) << fetcher.LastError().toStdString();
    EXPECT_EQ(Header(older.LastRequest(), "Cookie"), "s=1");
    EXPECT_EQ(Header(older.LastRequest(), "User-Agent"), OwnUserAgent().toLatin1());
    EXPECT_EQ(bench.State.LastFetched.Address, QString(older.Base() + u'/'));
    EXPECT_EQ(bench.State.LastFetched.Peer, u"127.0.0.1"_s);

    const TestAuthority stranger;
    TlsServer untrusted(stranger, TlsVersions::Only13, Http("x"));
    EXPECT_FALSE(fetcher.DownloadURL(untrusted.Base(), page, false));
    EXPECT_EQ(page, u"older"_s);
}

// A website's start page goes through the proxy of the settings, too, and https through its tunnel.
TEST_F(Modern, NothingGoesPastTheProxy) {
    LoopbackServer proxy([](const QByteArray&) { return LoopbackServer::Answer{Http("x", "502 Bad Gateway")}; });
    bench.Options.rUseProxy = bench.Options.rAuthentification = true;
    bench.Options.eHost = u"127.0.0.1"_s;
    bench.Options.ePort = QString::number(proxy.Port());
    bench.Options.eUserName = u"u"_s;
    EXPECT_FALSE(fetcher.DirectDownloadURL(u"https://origin.test/x"_s, page, false));
    ASSERT_EQ(proxy.Requests().size(), 1);
    EXPECT_TRUE(proxy.Requests()[0].startsWith("CONNECT origin.test:443 ")) << proxy.Requests()[0].data();
    EXPECT_EQ(Header(proxy.Requests()[0], "Proxy-Authorization"), "Basic " + QByteArray("u:").toBase64());
    // The proxy is the user's choice wherever it stands; where a page leads to is not.
    ComeFromThePublic();
    EXPECT_FALSE(fetcher.DownloadURL(u"http://origin.test/x"_s, page, false));
    EXPECT_EQ(proxy.Requests().size(), 2);
    ExpectRefusal(u"http://127.0.0.1:9/"_s);
    EXPECT_EQ(proxy.Requests().size(), 2);
}

TEST_F(Modern, APublicPageLeadsNowhereInside) {
    LoopbackServer server([](const QByteArray&) { return LoopbackServer::Answer{Http("inside")}; });
    const QString port = QString::number(server.Port());
    ComeFromThePublic();
    ExpectRefusal(server.Base());
    ExpectRefusal(u"http://2130706433:%1/"_s.arg(port));
    ExpectRefusal(u"http://[::ffff:127.0.0.1]:%1/"_s.arg(port));
    ExpectRefusal(u"http://localhost:%1/"_s.arg(port));
#ifdef Q_OS_LINUX
    ExpectRefusal(u"http://inside.test:%1/"_s.arg(port)); // by name: seen when it is connected to
    EXPECT_TRUE(fetcher.LastError().contains(u"inside.test (127.0.0.1)")) << fetcher.LastError().toStdString();
#endif
    EXPECT_TRUE(server.Requests().isEmpty());
    // What starts on this machine, as the demo directories do, may stay there, but leads no further inside.
    bench.State.CurrPage = {server.Base(), u"127.0.0.1"_s};
    EXPECT_TRUE(fetcher.DownloadURL(server.Base(), page, false)) << fetcher.LastError().toStdString();
    ExpectRefusal(u"http://192.168.0.1/"_s);
}

// The user's own wish leads anywhere, its redirects only where the place that sends them may lead.
TEST_F(Modern, RedirectsAreGuardedToo) {
    QByteArray target;
    LoopbackServer server([&](const QByteArray& request) {
        return request.startsWith("GET /end")
                   ? LoopbackServer::Answer{Http("end")}
                   : LoopbackServer::Answer{Http("", "302 Found", "Location: " + target + "\r\n")};
    });
    target = "/end";
    EXPECT_TRUE(fetcher.DownloadURL(server.Base(), page, false)) << fetcher.LastError().toStdString();
    for (const char* const inside : {"http://169.254.169.254/latest", "http://10.0.0.1/", "http://[fe80::1]/"}) {
        target = inside;
        ExpectRefusal(server.Base());
        EXPECT_FALSE(fetcher.DownloadURL(server.Base(), page, false));
    }
    target = "file:///etc/hostname";
    EXPECT_FALSE(fetcher.DownloadURL(server.Base(), page, false));
    EXPECT_EQ(page, u"end"_s);
}

TEST_F(Modern, ContactPagesWhereverTheyAre) {
    LoopbackServer server([](const QByteArray& request) {
        const auto page = [](const QByteArray& body) { return LoopbackServer::Answer{Http(body)}; };
        if (request.startsWith("GET / "))
            return LoopbackServer::Answer{Http("", "302 Found", "Location: /en/home\r\n")};
        if (request.startsWith("GET /en/home "))
            return page(
                "<a href=\"kontakt?a=1&amp;b=contact\">x</a> <a href='../about#team'>y</a> <a href=\"about\">z</a>"
                "<a href=\"mailto:help@finch.test\">Contact</a> <a href=\"/en/home#contact\">Contact</a>"
                "<a href=\"javascript:help()\">Help</a> <img src=\"logo@2x.png\"> bootstrap@5.3.0");
        if (request.startsWith("GET /en/kontakt?a=1&b=contact "))
            return page("one@finch.test");
        if (request.startsWith("GET /about "))
            return page("two@finch.test ONE@finch.test");
        return page("three@finch.test");
    });
    bench.Options.cExtractEmails = true;
    EmailHarvester harvester(bench.State, bench.Options, fetcher);
    EXPECT_EQ(harvester.EmailsOfWebsite(server.Base()),
              u"help@finch.test;one@finch.test;two@finch.test;three@finch.test"_s);
    EXPECT_EQ(server.Requests().size(), 5);
    EXPECT_TRUE(bench.State.CurrPage.Address.isEmpty());

    // A website of the public leads nowhere inside, whatever its directory may do.
    harvester.ContactPagesList.Clear();
    bench.State.CurrPage = {u"http://shop.example/"_s, u"198.41.0.4"_s};
    harvester.FindContactPages(u"<a href=\"%1/contact\">x</a>"_s.arg(server.Base()));
    harvester.ExtractEmails();
    EXPECT_EQ(server.Requests().size(), 5);
    QString many;
    for (int i = 0; i < 500; ++i)
        many += u"<a href=\"/contact%1\">x</a>"_s.arg(i);
    harvester.ContactPagesList.Clear();
    harvester.FindContactPages(many);
    EXPECT_EQ(harvester.ContactPagesList.Count(), 20);
}

TEST(MayBeEmail, TellsAddressesFromWhatLooksLikeThem) {
    for (const QStringView address : {u"info@finch.test", u"o-k.x_y@a-b.co.uk", u"a@b.io", u"x@xn--d1acufc.xn--p1ai"})
        EXPECT_TRUE(MayBeEmail(address)) << address.toString().toStdString();
    for (const QStringView text :
         {u"logo@2x.png", u"bootstrap@5.3.0", u"icon@3x.WEBP", u"jquery@3.7.1.min.js", u"@finch.test", u".a@b.com",
          u"a.@b.com", u"a..b@c.com", u"a@-b.com", u"a@b-.com", u"a@b_c.com", u"a@b.c", u"a@b.c0m", u"a@b",
          u"605a7baede844d278b89dc95ae0a9123@reports.finch.test"})
        EXPECT_FALSE(MayBeEmail(text)) << text.toString().toStdString();
}

} // namespace
} // namespace Brindle
