#include "FetchingFixture.h"

#include <QElapsedTimer>
#include <QTimer>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;
using Test::ClosedPort;
using Test::Fetching;
using Test::Header;
using Test::Http;
using Test::LoopbackServer;

// A proxy of the test's own: it answers in the origin's place.
class Proxying : public Fetching {
protected:
    LoopbackServer first{[](const QByteArray&) { return LoopbackServer::Answer{Http("first", "502 Bad Gateway")}; }};
    LoopbackServer second{[](const QByteArray& request) {
        return LoopbackServer::Answer{Header(request, "Proxy-Authorization") ==
                                              "Basic " + QByteArray("u:p%:x").toBase64()
                                          ? Http("second")
                                          : Http("who?", "407 Login", "Proxy-Authenticate: Basic realm=\"x\"\r\n")};
    }};
    static QString Address(const LoopbackServer& server) { return u"127.0.0.1:%1"_s.arg(server.Port()); }
};

TEST_F(Proxying, TheSingleProxy) {
    bench.Options.rUseProxy = true;
    bench.Options.eHost = u"127.0.0.1"_s;
    bench.Options.ePort = QString::number(second.Port());
    EXPECT_FALSE(fetcher.DownloadURL(u"http://origin.test/x?y"_s, page, false)); // nobody logged in
    bench.Options.rAuthentification = true;
    bench.Options.eUserName = u"u"_s;
    bench.Options.ePassword = u"p%:x"_s;
    Statuses();
    EXPECT_TRUE(fetcher.DownloadURL(u"http://origin.test/x?y"_s, page, false));
    EXPECT_EQ(page, u"second"_s);
    EXPECT_EQ(Statuses(), (QStringList{u"main62"_s, u"main63 "_s + Address(second), u""_s}));
    EXPECT_TRUE(second.Requests().last().startsWith("GET http://origin.test/x?y HTTP/1.1\r\nHost: origin.test\r\n"));
    // The direct variant goes the way of the last call. A user who switches the proxy off means it.
    LoopbackServer origin([](const QByteArray&) { return LoopbackServer::Answer{Http("origin")}; });
    bench.Options.rUseProxy = false;
    EXPECT_TRUE(fetcher.DirectDownloadURL(u"http://origin.test/direct"_s, page, false));
    EXPECT_EQ(second.Requests().size(), 3);
    EXPECT_TRUE(fetcher.DownloadURL(origin.Base(), page, false)) << fetcher.LastError().toStdString();
    EXPECT_TRUE(fetcher.DirectDownloadURL(origin.Base(), page, false));
    EXPECT_EQ(origin.Requests().size(), 2);
    EXPECT_EQ(Header(origin.Requests()[0], "Proxy-Authorization"), "");

    bench.Options.rUseProxy = true;
    bench.Options.ePort = u"99999"_s;
    EXPECT_FALSE(fetcher.DownloadURL(u"http://origin.test/"_s, page, false)); // out of range: the request fails
    bench.Options.ePort = u"none"_s;
    EXPECT_FALSE(fetcher.DownloadURL(u"http://origin.test/"_s, page, false));
    EXPECT_TRUE(Statuses().contains(u"main63 127.0.0.1:80"_s));
    EXPECT_FALSE(fetcher.LastError().contains(u"p%:x"));
}

TEST_F(Proxying, LoginsAreSentAsTheyStand) {
    LoopbackServer proxy([](const QByteArray&) { return LoopbackServer::Answer{Http("x")}; });
    bench.Options.rUseProxy = bench.Options.rAuthentification = true;
    bench.Options.eHost = u"127.0.0.1"_s;
    bench.Options.ePort = QString::number(proxy.Port());
    bench.Options.eUserName = u"a%41@\u00E9"_s;
    bench.Options.ePassword = u"%2F: x"_s;
    ASSERT_TRUE(fetcher.DownloadURL(u"http://origin.test/"_s, page, false));
    EXPECT_EQ(Header(proxy.Requests()[0], "Proxy-Authorization"),
              "Basic " + QByteArray("a%41@\xC3\xA9:%2F: x").toBase64());
}

TEST_F(Proxying, StopAbortsAProxyThatHangs) {
    LoopbackServer proxy([](const QByteArray&) { return LoopbackServer::Answer{{}, true}; });
    bench.Options.rRandomProxy = true;
    bench.Options.eRandomProxies = {Address(proxy)};
    QElapsedTimer since;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        if (proxy.Requests().isEmpty() || since.isValid())
            return;
        bench.State.ShouldStop = true;
        since.start();
        fetcher.Disconnect();
    });
    poll.start(1);
    EXPECT_FALSE(fetcher.DownloadURL(u"http://origin.test/"_s, page, false));
    EXPECT_LT(since.elapsed(), 200);
    EXPECT_EQ(proxy.Requests().size(), 1);
}

TEST_F(Proxying, ProxiesOfTheEnvironmentHaveNoEffect) {
    LoopbackServer origin([](const QByteArray&) { return LoopbackServer::Answer{Http("origin")}; });
    for (const char* name : {"http_proxy", "all_proxy", "ALL_PROXY"})
        qputenv(name, first.Base().toUtf8());
    qputenv("NO_PROXY", "*");
    EXPECT_TRUE(fetcher.DownloadURL(origin.Base(), page, false));
    EXPECT_EQ(first.Requests().size(), 0);
    bench.Options.rUseProxy = true;
    bench.Options.eHost = u"127.0.0.1"_s;
    bench.Options.ePort = QString::number(first.Port());
    EXPECT_FALSE(fetcher.DownloadURL(origin.Base(), page, false)); // the proxy is asked, whatever NO_PROXY says
    EXPECT_EQ(first.Requests().size(), 1);
    for (const char* name : {"http_proxy", "all_proxy", "ALL_PROXY", "NO_PROXY"})
        qunsetenv(name);
}

TEST_F(Proxying, TheRotatingList) {
    const QString refusing = u"127.0.0.1:%1"_s.arg(ClosedPort());
    bench.Options.rRandomProxy = true;
    bench.Options.rUseProxy = true; // the list overrides it
    bench.Options.eHost = u"single.test"_s;
    bench.Options.eRandomProxies = {refusing, u""_s, Address(first) + u":u:p%", Address(second) + u":u:p%:x:y"};
    // The password of a line ends at the next colon, so the third proxy never lets anybody in.
    bench.Loop.Post(60'000, [this] { bench.State.ShouldStop = true; });
    fetcher.SetRandom([](qint32) { return 1; });
    bench.Options.eRandom = u"3"_s;
    EXPECT_FALSE(fetcher.DownloadURL(u"http://origin.test/"_s, page, false));
    EXPECT_GT(first.Requests().size(), 5); // round and round until the user stops
    EXPECT_LE(std::abs(first.Requests().size() - second.Requests().size()), 1);
    EXPECT_EQ(Header(first.Requests()[0], "Proxy-Authorization"), "Basic " + QByteArray("u:p%").toBase64());
    const QStringList shown = Statuses();
    const QString next = u"main66"_s;
    ASSERT_GT(shown.size(), 9);
    EXPECT_EQ(shown.mid(0, 4), (QStringList{u"main62"_s, u"main63 "_s + refusing, u""_s, next}));
    // From then on the status says what the attempt before failed with.
    EXPECT_TRUE(shown[5].startsWith(QString(u"main63 " + Address(first) + u" ("))) << shown[5].toStdString();
    EXPECT_EQ(shown.mid(6, 3), (QStringList{u""_s, next, u"main62 (HTTP status 502)"_s}));
    EXPECT_EQ(shown.last(), u"main65"_s);

    // A new call begins with the first entry again, and a line without a login switches it off.
    LoopbackServer open([](const QByteArray&) { return LoopbackServer::Answer{Http("open")}; });
    bench.State.ShouldStop = false;
    bench.Options.eRandomProxies = {Address(open)};
    EXPECT_TRUE(fetcher.DownloadURL(u"http://origin.test/"_s, page, false));
    EXPECT_EQ(Header(open.Requests()[0], "Proxy-Authorization"), "");
}

TEST_F(Proxying, ListsWithoutProxiesGoDirect) {
    LoopbackServer origin([](const QByteArray&) { return LoopbackServer::Answer{Http("origin")}; });
    bench.Options.rRandomProxy = true;
    for (const QStringList& list : {QStringList(), QStringList{u""_s, u""_s}}) {
        bench.Options.eRandomProxies = list;
        Statuses();
        EXPECT_TRUE(fetcher.DownloadURL(origin.Base(), page, false));
        EXPECT_EQ(Statuses().value(1), u"main63 :80"_s);
    }
    EXPECT_TRUE(origin.Requests()[0].startsWith("GET / HTTP/1.1\r\n"));
    EXPECT_EQ(Header(origin.Requests()[0], "Proxy-Authorization"), "");
}

TEST_F(Proxying, TheListMayChangeWhileItRotates) {
    fetcher.Offline = true;
    bench.Options.rRandomProxy = true;
    bench.Options.eRandomProxies = {u"a:1"_s, u"b:2"_s, u"c:3"_s};
    bench.Loop.Post(60'000, [this] { bench.State.ShouldStop = true; });
    fetcher.OnSend = [this] {
        if (fetcher.Sent.size() == 3)
            bench.Options.eRandomProxies = {u"d:4"_s}; // shorter than the place that is reached
        else if (fetcher.Sent.size() == 5)
            bench.Options.eRandomProxies.clear();
    };
    EXPECT_FALSE(fetcher.DownloadURL(u"http://origin.test/"_s, page, false));
    QStringList hosts;
    for (const HttpRequest& request : fetcher.Sent)
        hosts.append(request.Via.Host);
    EXPECT_EQ(hosts, (QStringList{u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"d"_s})); // none without a proxy
    EXPECT_TRUE(fetcher.LastError().contains(u"offline")) << fetcher.LastError().toStdString();
}

TEST_F(Proxying, PatienceBoundsTheTimeForOneAddress) {
    QStringList failures;
    QStringList givenUp;
    fetcher.AttemptFailed = [&](const QString& line) { failures.append(line); };
    fetcher.GaveUp = [&](const QString& line) { givenUp.append(line); };
    bench.Options.rRandomProxy = true;
    bench.Options.eRandomProxies = {Address(first)};
    bench.Loop.Post(600'000, [this] { bench.State.ShouldStop = true; });
    fetcher.SetPatience(2500);
    for (const QString& address : {u"http://origin.test/"_s, u"http://"_s}) {
        failures.clear();
        givenUp.clear();
        fetcher.Sent.clear();
        const qint64 before = bench.Loop.Now();
        EXPECT_FALSE(fetcher.DownloadURL(address, page, false));
        EXPECT_EQ(bench.Loop.Now() - before, 2500); // five attempts with their pauses
        EXPECT_EQ(fetcher.Sent.size(), 5U);
        EXPECT_EQ(failures.size(), 1) << failures.join(u'|').toStdString(); // the same reason is told once
        EXPECT_EQ(givenUp, QStringList{fetcher.LastError()});
        EXPECT_TRUE(fetcher.LastError().contains(u"given up after 2.5 s"));
    }
    // A proxy that takes the request and never answers has the time of the address, not that of a read.
    LoopbackServer silent([](const QByteArray&) { return LoopbackServer::Answer{{}, true}; });
    bench.Options.eRandomProxies = {Address(silent)};
    fetcher.SetPatience(10);
    EXPECT_FALSE(fetcher.DownloadURL(u"http://origin.test/"_s, page, false));
    EXPECT_EQ(silent.Requests().size(), 1);
    // Without the list it has no say.
    bench.Options.rRandomProxy = false;
    EXPECT_FALSE(fetcher.DownloadURL(u"http://127.0.0.1:%1/"_s.arg(ClosedPort()), page, false));
    EXPECT_FALSE(fetcher.LastError().contains(u"given up"));
}

} // namespace
} // namespace Brindle
