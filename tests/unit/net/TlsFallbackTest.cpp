#include "HarvestBench.h"
#include "LoopbackServer.h"
#include "PrintTo.h"
#include "TlsServer.h"
#include "net/PageFetcher.h"
#include "net/ServerTrust.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;
using Test::ClosedPort;
using Test::HarvestBench;
using Test::Http;
using Test::LoopbackServer;
using Test::TestAuthority;
using Test::TlsServer;
using Test::TlsVersions;

struct TlsFetching : testing::Test {
    TestAuthority authority;
    HarvestBench bench{SiteCode::UsYellowPages};
    PageFetcher fetcher{bench.State, bench.Options, bench.Texts, bench.Loop, bench.Status};
    QString page = u"before"_s;

    TlsFetching() {
        bench.Options.eRandom = u"0"_s;
        fetcher.SetCaFile(authority.CaFile());
    }
};

TEST_F(TlsFetching, FetchesByTls12WithoutProxyOrSharedCookies) {
    TlsServer server(authority, TlsVersions::Only12, Http("secure", "200 OK", "Set-Cookie: s=1\r\n"));
    bench.Options.rUseProxy = true;
    bench.Options.eHost = u"127.0.0.1"_s;
    bench.Options.ePort = QString::number(ClosedPort());
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(fetcher.DownloadURL(QString(server.Base() + u"/x"), page, true))
            << fetcher.LastError().toStdString();
        EXPECT_EQ(page, u"secure"_s);
        EXPECT_EQ(server.LastVersion(), "TLSv1.2");
        const QByteArray request = server.LastRequest().toLower();
        EXPECT_TRUE(request.startsWith("get /x http/1.1"));
        EXPECT_TRUE(request.contains("msie 9.0"));
        EXPECT_FALSE(request.contains("cookie"));
        EXPECT_FALSE(request.contains("no-cache"));
    }
    EXPECT_FALSE(fetcher.DirectDownloadURL(server.Base(), page, false)); // that variant has no fallback
    EXPECT_TRUE(fetcher.LastError().contains(u"IOHandler"));
}

TEST_F(TlsFetching, RefusesWhatItCannotTrust) {
    const TestAuthority stranger;
    TlsServer tooNew(authority, TlsVersions::Only13, Http("x"));
    TlsServer untrusted(stranger, TlsVersions::Only12, Http("x"));
    TlsServer expired(authority, TlsVersions::Only12, Http("x"), -60);
    TlsServer missing(authority, TlsVersions::Only12, Http("x", "404 Not Found"));
    for (const TlsServer* server : {&tooNew, &untrusted, &expired, &missing}) {
        const qint64 before = bench.Loop.Now();
        EXPECT_FALSE(fetcher.DownloadURL(server->Base(), page, false));
        EXPECT_EQ(page, u"before"_s);
        EXPECT_EQ(bench.Loop.Now() - before, 500); // like any other failure
        EXPECT_FALSE(fetcher.LastError().isEmpty());
    }
    TlsServer otherName(authority, TlsVersions::Only12, Http("x")); // its certificate is good for 127.0.0.1 only
    EXPECT_FALSE(fetcher.DownloadURL(otherName.Base().replace(u"127.0.0.1"_s, u"localhost"_s), page, false));
    EXPECT_EQ(page, u"before"_s);
}

TEST_F(TlsFetching, OneServerCanHaveAnAuthorityOfItsOwn) {
    const TestAuthority stranger;
    TlsServer own(stranger, TlsVersions::Only12, Http("own"));
    TlsServer other(stranger, TlsVersions::Only12, Http("x"));
    TrustServer(own.Base(), stranger.CaFile());
    TrustServer(u"https://example.com:443/"_s, stranger.CaFile());
    EXPECT_TRUE(AuthorityOf(u"https://example.com:443/"_s).isEmpty());
    EXPECT_TRUE(fetcher.DownloadURL(own.Base(), page, false)) << fetcher.LastError().toStdString();
    EXPECT_EQ(page, u"own"_s);
    EXPECT_FALSE(fetcher.DownloadURL(other.Base(), page, false));
}

// The fallback uses no proxy, so the next proxy of a list would change nothing.
TEST_F(TlsFetching, AFailedFallbackEndsTheRotation) {
    const TestAuthority stranger;
    TlsServer untrusted(stranger, TlsVersions::Only12, Http("x"));
    bench.Options.rRandomProxy = true;
    bench.Options.eRandomProxies = {u"127.0.0.1:%1"_s.arg(ClosedPort())};
    bool stopped = false;
    bench.Loop.Post(60'000, [&] { stopped = bench.State.ShouldStop = true; });
    EXPECT_FALSE(fetcher.DownloadURL(untrusted.Base(), page, false));
    EXPECT_FALSE(stopped);
    EXPECT_EQ(bench.Loop.Now(), 500);
}

// A company's own certificate authority is named as to any other program on OpenSSL.
TEST_F(TlsFetching, TrustsTheAuthoritiesOfTheEnvironment) {
    TlsServer server(authority, TlsVersions::Only12, Http("secure"));
    fetcher.SetCaFile({});
    EXPECT_FALSE(fetcher.DownloadURL(server.Base(), page, false));
    qputenv("SSL_CERT_FILE", authority.CaFile().toLocal8Bit());
    EXPECT_TRUE(fetcher.DownloadURL(server.Base(), page, false)) << fetcher.LastError().toStdString();
    qunsetenv("SSL_CERT_FILE");
    EXPECT_EQ(page, u"secure"_s);
}

TEST_F(TlsFetching, ARedirectToTlsAsksForTheFirstAddressAnew) {
    TlsServer secure(authority, TlsVersions::Only12, Http("secure"));
    LoopbackServer plain([&](const QByteArray&) {
        return LoopbackServer::Answer{Http("", "302 Found", "Location: " + secure.Base().toUtf8() + "/to\r\n")};
    });
    EXPECT_TRUE(fetcher.DownloadURL(plain.Base(), page, false)) << fetcher.LastError().toStdString();
    EXPECT_EQ(page, u"secure"_s);
    EXPECT_EQ(plain.Requests().size(), 2);
    EXPECT_EQ(bench.State.CurrRedirect, QString(secure.Base() + u"/to"));
}

} // namespace
} // namespace Brindle
