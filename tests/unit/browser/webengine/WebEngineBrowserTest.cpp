#include "browser/webengine/WebEngineBrowser.h"

#include "PageServer.h"
#include "PrintTo.h"
#include "core/QtMessageLoop.h"
#include "page/HtmlDocument.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QWidget>

#include <gtest/gtest.h>

namespace Brindle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
namespace {

using Test::PageServer;

class WebEngine : public testing::Test {
protected:
    WebEngine() : Browser(Loop, QString()) {
        Browser.Widget()->resize(1280, 900);
        Browser.Widget()->show();
    }

    // Waits for something that the engine does in processes of its own; the limit only ends a test that fails.
    template <typename Condition>
    bool Comes(Condition condition, qint64 limit = 60'000) {
        QElapsedTimer waited;
        waited.start();
        bool came = condition();
        for (; !came && waited.elapsed() < limit; came = condition())
            Loop.WaitForMessage(50);
        return came;
    }

    bool Load(const QString& address) {
        Browser.Navigate(address);
        return Comes([this] { return !Browser.Busy(); });
    }

    QString Body() { return Browser.BodyOuterHtml(MarkupForm::Standard); }

    QtMessageLoop Loop;
    PageServer Server;
    WebEngineBrowser Browser;
};

TEST_F(WebEngine, DeliversTheBodyInBothFormsAsTheStaticReadingDoes) {
    const QStringView pages[] = {
        (u"<!doctype html><body class=a lang='b c'><h3 class=\"listingTitleLine\">A &amp; B&nbsp;\u203a</h3>"
         u"<a class=prec disabled>x</a><input maxlength=150 readonly name=what autocomplete=off>"),
        u"<noscript><img src=x></noscript><p>a<p>b<table>c<tr><td>d<template><li>e<noscript>&lt;</noscript></template>",
        u"<svg viewbox='0 0 1 1'><lineargradient/><a xlink:href=#x /></svg><math definitionurl=d><mi>x</math>",
        u"<script>/*<b>&*/</script><style>a>b{}</style><textarea>\n<b></textarea><iframe><p></iframe><xmp><i></xmp>",
        u"<b>1<i>2</b>3</i><a href=x>4<a href=y>5<menuitem>6<isindex><main><p>7<dialog>8</dialog></main>",
        u"<pre>\n\na</pre><!--b--><?c><my-Tag A=b title='\"<>&\u00a0'>\U0001F600</my-tag></body><!--d--></html>e",
        u"<frameset><frame src=about:blank><noframes><p></noframes></frameset>",
        u"<plaintext><b>x</plaintext>",
    };
    QStringList sources;
    for (const QStringView page : pages)
        sources.append(page.toString());
    // Deeper than an engine lets a document become.
    sources.append(u"<div><i>"_s.repeated(400) + u"x<p>y"_s);
    for (const QString& source : sources) {
        Server.Pages["/"] = source.toUtf8();
        ASSERT_TRUE(Load(Server.Address()));
        EXPECT_TRUE(Body() == BodyOfPage(source, MarkupForm::Standard)) << source.left(200).toStdString();
        EXPECT_TRUE(Browser.BodyOuterHtml(MarkupForm::Legacy) == BodyOfPage(source, MarkupForm::Legacy))
            << source.left(200).toStdString();
        EXPECT_TRUE(Browser.DocumentHtml() == HtmlDocument(source).DocumentHtml()) << source.left(200).toStdString();
    }
}

TEST_F(WebEngine, WalksLinksAsTheStaticReadingDoes) {
    const QString source = u"<style>u{display:none}</style><a name=n>no</a><a href=1>\n <b>Avanti</b> \u203a\n</a>"
                           "<a href=2><div>a</div>b<br>c</a><map><area href=3></map>"
                           "<template><a href=4>t</a></template><a href='#f' hidden> h <script>s</script></a>"_s;
    Server.Pages["/"] = source.toUtf8();
    Server.Pages["/1"] = "<p>next</p><a href='?q'>query</a>";
    ASSERT_TRUE(Load(Server.Address()));
    const HtmlDocument expected(source);
    ASSERT_EQ(Browser.LinkCount(), static_cast<int>(expected.Links().size()));
    for (int i = 0; i < Browser.LinkCount(); ++i)
        EXPECT_EQ(Browser.LinkInnerText(i).trimmed(), expected.Links()[static_cast<size_t>(i)].Text.trimmed());
    EXPECT_EQ(Browser.LinkInnerText(99), QString());

    Browser.ClickLink(99);
    Browser.ClickLink(0);
    // The page that is being left is not read again.
    EXPECT_TRUE(Comes([this] {
        const QString body = Body();
        EXPECT_FALSE(body.contains(u"Avanti"));
        return body.contains(u"next");
    }));
    EXPECT_TRUE(Comes([this] { return !Browser.Busy(); }));
    EXPECT_EQ(Browser.LocationAddress(), Server.Address(u"/1"_s));
    EXPECT_EQ(Browser.LinkInnerText(0), u"query"_s);

    Browser.GoBack();
    EXPECT_TRUE(Comes([this] { return !Browser.Busy() && Body().contains(u"Avanti"); }));
    Browser.GoForward();
    EXPECT_TRUE(Comes([this] { return !Browser.Busy() && Body().contains(u"next"); }));
}

TEST_F(WebEngine, AClickThatStaysOnThePageKeepsItReadable) {
    Server.Pages["/"] =
        "<a href='#here'>a</a><a href='/x' onclick='document.title=1;this.innerText=\"done\";return false'>b</a>"
        "<a href='javascript:void(document.body.append(\"more\"))'>c</a>";
    ASSERT_TRUE(Load(Server.Address()));
    for (int i = 0; i < 3; ++i)
        Browser.ClickLink(i);
    EXPECT_TRUE(Comes([this] { return Body().contains(u"more"); }));
    EXPECT_TRUE(Body().contains(u"done"));
    EXPECT_TRUE(Comes([this] { return Browser.LocationAddress().endsWith(u"#here"); }));
}

TEST_F(WebEngine, AHungPageIsLeftWhenPatienceEndsAndCanBeReloaded) {
    Browser.SetPatience(1s);
    Server.Pages["/"] =
        "<p>first<script>setTimeout(() => { if (location.hash != '#ok') while (true) {} }, 50)</script>";
    ASSERT_TRUE(Load(Server.Address()));
    EXPECT_TRUE(Comes([&] { return Body().isEmpty(); }));
    EXPECT_TRUE(Browser.LastError().endsWith(u"the page does not answer"));
    Browser.SetPatience(10min);
    Server.Pages["/"] = "<p>second";
    Browser.Refresh();
    EXPECT_TRUE(Comes([this] { return !Browser.Busy() && Body().contains(u"second"); }));
    EXPECT_EQ(Browser.LastError(), QString());
}

TEST_F(WebEngine, ADeadPageIsEmptyAtOnceAndCanBeReloaded) {
    Server.Pages["/"] = "<p>alive";
    ASSERT_TRUE(Load(Server.Address()));
    Browser.Navigate(u"chrome://crash"_s);
    EXPECT_TRUE(Comes([this] { return !Browser.Busy(); }));
    EXPECT_EQ(Body(), QString());
    EXPECT_FALSE(Browser.LastError().isEmpty());
    ASSERT_TRUE(Load(Server.Address()));
    EXPECT_TRUE(Body().contains(u"alive"));
}

TEST_F(WebEngine, AsksTheUserNothing) {
    Server.Pages["/"] = "<p id=p></p><script>alert('a'); window.onbeforeunload = () => 'stay?';"
                        "p.innerText = confirm('b') + ' ' + prompt('c') + ' '; nothing.here();</script>";
    Server.Pages["/login"] = "<p>refused";
    Server.Headers["/login"] = "Status: 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"x\"\r\n";
    ASSERT_TRUE(Load(Server.Address()));
    EXPECT_TRUE(Body().contains(u"true null"));
    ASSERT_TRUE(Load(Server.Address(u"/login"_s)));
    EXPECT_TRUE(Body().contains(u"refused")) << Body().toStdString();
}

TEST_F(WebEngine, AWantedWindowOpensInThisViewAndNoOther) {
    Server.Pages["/"] = "<a href='/a' target=_blank>a</a><a href='#' onclick='window.open(\"/b\");return false'>b</a>";
    Server.Pages["/a"] = "<p>page a";
    Server.Pages["/b"] = "<p>page b";
    for (int link = 0; link < 2; ++link) {
        ASSERT_TRUE(Load(Server.Address()));
        Browser.ClickLink(link);
        EXPECT_TRUE(
            Comes([this, link] { return !Browser.Busy() && Body().contains(link == 0 ? u"page a" : u"page b"); }));
    }
    // An advertisement that opens by itself. The second page comes up behind it, so the first one was dropped by then.
    Server.Pages["/"] = "<p>listings<script>window.open('/advert'); document.body.append('opened')</script>";
    Server.Pages["/advert"] = "<p>buy";
    ASSERT_TRUE(Load(Server.Address()));
    EXPECT_TRUE(Body().contains(u"opened")) << Body().toStdString();
    ASSERT_TRUE(Load(Server.Address(u"/a"_s)));
    EXPECT_TRUE(Body().contains(u"page a"));
    for (const QByteArray& request : Server.Requests)
        EXPECT_FALSE(request.startsWith("GET /advert"));
}

// A user who chooses another page while one is coming gets the other one, whenever he does.
TEST_F(WebEngine, ThePageThatWasAskedForLastComes) {
    Server.Pages["/a"] = "<p>page a";
    Server.Pages["/b"] = "<p>page b";
    const QString first = Server.Address(u"/a"_s);
    const QString last = Server.Address(u"/b"_s);
    const std::function<bool(int)> moments[] = {
        [](int) { return true; }, [&](int) { return Browser.LocationAddress() == first; },
        [&](int) { return Body().contains(u"page a"); }, [](int rounds) { return rounds > 3; }};
    for (size_t moment = 0; moment < std::size(moments) * 5; ++moment) {
        Browser.Navigate(first);
        for (int rounds = 0; Browser.Busy() && !moments[moment % std::size(moments)](rounds); ++rounds)
            Loop.WaitForMessage(1);
        ASSERT_TRUE(Load(last));
        EXPECT_TRUE(Body().contains(u"page b")) << moment << ' ' << Body().toStdString();
        EXPECT_EQ(Browser.LocationAddress(), last) << moment;
        EXPECT_EQ(Browser.LastError(), QString()) << moment;
    }
    // Also when the one before was stopped before it began.
    Browser.Navigate(last);
    Browser.Stop();
    EXPECT_TRUE(Comes([this] { return !Browser.Busy(); }));
    ASSERT_TRUE(Load(first));
    EXPECT_TRUE(Body().contains(u"page a"));
}

TEST_F(WebEngine, WhatBringsUpNoPageLeavesTheOldOneAndStoresNothing) {
    Server.Pages["/"] = "<p>old<a href='/file'>f</a><a href='/nothing'>n</a>";
    Server.Pages["/file"] = "binary";
    Server.Headers["/file"] = "Content-Type: application/octet-stream\r\nContent-Disposition: attachment\r\n";
    Server.Pages["/nothing"] = "";
    Server.Headers["/nothing"] = "Status: 204 No Content\r\n";
    QStringList refused;
    QObject::connect(&Browser, &EmbeddedBrowser::DownloadRefused, &Browser,
                     [&](const QString& address) { refused.append(address); });
    ASSERT_TRUE(Load(Server.Address()));
    for (int link = 0; link < 2; ++link) {
        Browser.ClickLink(link);
        EXPECT_TRUE(Comes([this] { return !Browser.Busy() && Body().contains(u"old"); })) << link;
        ASSERT_TRUE(Load(Server.Address(link == 0 ? u"/file"_s : u"/nothing"_s)));
        EXPECT_TRUE(Comes([this] { return Body().contains(u"old"); })) << link;
    }
    const QString file = Server.Address(u"/file"_s);
    EXPECT_TRUE(Comes([&] { return refused.size() >= 2; }));
    EXPECT_EQ(refused, (QStringList{file, file}));
    // A download writes its file while it is under way; two more pages are time enough for six bytes.
    ASSERT_TRUE(Load(Server.Address()));
    ASSERT_TRUE(Load(Server.Address(u"/missing"_s)));
    const QDir home(qEnvironmentVariable("HOME"));
    EXPECT_TRUE(home.entryList({u"file*"_s}, QDir::Files).isEmpty());
    EXPECT_TRUE(QDir(home.filePath(u"Downloads"_s)).isEmpty());
}

TEST_F(WebEngine, FailuresAreNamedAndAMissingPageIsAPage) {
    ASSERT_TRUE(Load(Server.Address(u"/missing"_s)));
    EXPECT_TRUE(Body().contains(u"missing"));
    QTcpServer closed;
    closed.listen(QHostAddress::LocalHost);
    const quint16 port = closed.serverPort();
    closed.close();
    ASSERT_TRUE(Load(u"127.0.0.1:%1/x"_s.arg(port)));
    EXPECT_EQ(Body(), QString());
    EXPECT_TRUE(Browser.LastError().contains(u"127.0.0.1:%1/x"_s.arg(port))) << Browser.LastError().toStdString();
    ASSERT_TRUE(Load(u"about:blank"_s));
    EXPECT_EQ(Browser.LastError(), QString());
    EXPECT_EQ(Body(), u"<body></body>"_s);
}

TEST_F(WebEngine, SendsItsAgentThroughTheProxyWithItsLogin) {
    PageServer proxy;
    const QByteArray page = "http://directory.example/list";
    proxy.Pages[page] = "<p>by proxy";
    proxy.Headers[page] = "Status: 407 Proxy Authentication Required\r\nProxy-Authenticate: Basic realm=\"x\"\r\n";
    Browser.SetUserAgent(u"Agent/1"_s);
    Browser.SetProxy({u"127.0.0.1"_s, proxy.serverPort(), ProxyLogin{u"user"_s, u"secret"_s}});
    Browser.Navigate(QString::fromLatin1(page));
    const QByteArray login = "Proxy-Authorization: Basic " + QByteArray("user:secret").toBase64();
    EXPECT_TRUE(Comes([&] {
        if (!proxy.Requests.isEmpty())
            proxy.Headers.clear(); // from the second request on it is content
        return !Browser.Busy() && Body().contains(u"by proxy");
    }));
    ASSERT_FALSE(proxy.Requests.isEmpty());
    EXPECT_TRUE(proxy.Requests.last().contains(login)) << proxy.Requests.last().toStdString();
    EXPECT_TRUE(proxy.Requests.last().contains("User-Agent: Agent/1\r\n"));

    // A proxy that takes no login is not asked for ever.
    proxy.Headers["http://other.example/"] = proxy.Headers[page] =
        "Status: 407 Proxy Authentication Required\r\nProxy-Authenticate: Basic realm=\"y\"\r\n";
    ASSERT_TRUE(Load(u"http://other.example/"_s));

    // 65536 more than the port of a proxy that answers.
    proxy.Pages["http://third.example/"] = "<p>wrong port";
    Browser.SetProxy({u"127.0.0.1"_s, proxy.serverPort() + 65536, {}});
    ASSERT_TRUE(Load(u"http://third.example/"_s));
    EXPECT_EQ(Body(), QString());
    EXPECT_TRUE(Browser.LastError().contains(QString::number(proxy.serverPort() + 65536)))
        << Browser.LastError().toStdString();

    Browser.SetProxy({});
    Server.Pages["/"] = "<p>direct";
    ASSERT_TRUE(Load(Server.Address()));
    EXPECT_TRUE(Body().contains(u"direct"));
}

TEST_F(WebEngine, APublicPageLeadsToNoPlaceOfThisMachine) {
    Server.Pages["/"] = "<p>secret";
    PageServer proxy;
    proxy.Pages["http://public.test/"] = "<p>list";
    proxy.Headers["http://public.test/away"] = "Status: 302 Found\r\nLocation: " + Server.Address().toUtf8() + "\r\n";
    proxy.Pages["http://public.test/away"] = "";
    Browser.SetProxy({u"127.0.0.1"_s, proxy.serverPort(), {}});
    ASSERT_TRUE(Load(u"http://public.test/"_s));
    ASSERT_TRUE(Body().contains(u"list")) << Browser.LastError().toStdString();
    for (const QString& address : {Server.Address(), u"http://public.test/away"_s, u"file:///etc/hostname"_s}) {
        ASSERT_TRUE(Load(u"about:blank"_s)); // as between the pages of a list
        Browser.Follow(address);
        EXPECT_TRUE(Comes([this] { return !Browser.Busy(); }));
        EXPECT_FALSE(Browser.LastError().isEmpty()) << address.toStdString();
        EXPECT_TRUE(Server.Requests.isEmpty()) << address.toStdString();
    }
    Browser.Follow(u"http://public.test/"_s);
    EXPECT_TRUE(Comes([this] { return !Browser.Busy(); }));
    EXPECT_EQ(Browser.LastError(), QString());
    Browser.SetProxy({});
    ASSERT_TRUE(Load(Server.Address())); // the user's own wish
    EXPECT_TRUE(Body().contains(u"secret"));
}

TEST_F(WebEngine, MoreIsWhatMakesThePageGrow) {
    Server.Pages["/"] = "<ul><li>one</ul><button onclick=\"setTimeout(() => document.querySelector('ul').innerHTML += "
                        "'<li>two', 300); this.disabled = true\">Load more</button>";
    ASSERT_TRUE(Load(Server.Address()));
    EXPECT_TRUE(Browser.LoadMore({}));
    EXPECT_TRUE(Body().contains(u"two"));
    EXPECT_FALSE(Browser.LoadMore({}));
}

TEST_F(WebEngine, TakesAnotherProxyFromTheFirstRequestOn) {
    Server.Pages["/"] = "<p>direct";
    ASSERT_TRUE(Load(Server.Address()));
    WebEngineBrowser beside(Loop, QString());
    beside.Navigate(Server.Address());
    ASSERT_TRUE(Comes([&beside] { return !beside.Busy(); }));
    PageServer proxies[2];
    for (int i = 0; i < 6; ++i) {
        PageServer& proxy = proxies[i % 2];
        const QByteArray page = "http://directory.example/" + QByteArray::number(i);
        for (PageServer& either : proxies)
            either.Pages[page] = "<p>page";
        // The engine has one proxy for all, so the second one to be told finds it changed.
        for (WebEngineBrowser* const browser : {&beside, &Browser})
            browser->SetProxy({u"127.0.0.1"_s, proxy.serverPort(), {}});
        ASSERT_TRUE(Load(QString::fromLatin1(page)));
        EXPECT_TRUE(proxy.Requests.join().contains(page)) << i;
        EXPECT_FALSE(proxies[1 - i % 2].Requests.join().contains(page)) << i;
    }
    // Stop takes back what waits for the proxy.
    Browser.SetProxy({});
    Browser.Navigate(Server.Address());
    Browser.Stop();
    EXPECT_FALSE(Browser.Busy());
    ASSERT_TRUE(Load(Server.Address()));
    EXPECT_TRUE(Body().contains(u"direct"));
}

TEST_F(WebEngine, ReadsALargePageWhileMessagesAreHandled) {
    Server.Pages["/"] = "<p>" + QByteArray("<div class=\"listing\">some text</div>").repeated(60'000) + "end";
    ASSERT_TRUE(Load(Server.Address()));
    int ticks = 0;
    const auto timer = Loop.CreateTimer(1, [&] { ++ticks; });
    timer->SetEnabled(true);
    EXPECT_GT(Body().size(), 2'000'000);
    EXPECT_GT(ticks, 0);
}

TEST_F(WebEngine, AReadEndsWhenTheProgramOrTheBrowserDoes) {
    Server.Pages["/"] = "<p>first<a href=x>y</a><script>setTimeout(() => { while (true) {} }, 0)</script>";
    auto browser = std::make_unique<WebEngineBrowser>(Loop, QString());
    // A read that went on to its end would take longer than the test may.
    browser->SetPatience(10min);
    Browser.SetPatience(10min);
    browser->Navigate(Server.Address());
    ASSERT_TRUE(Comes([&] { return !browser->Busy(); }));
    const auto close = Loop.CreateTimer(100, [&] { browser.reset(); });
    close->SetEnabled(true);
    while (browser)
        EXPECT_LE(browser->LinkCount(), 1);

    ASSERT_TRUE(Load(Server.Address()));
    const auto quit = Loop.CreateTimer(100, [this] { Loop.Quit(); });
    quit->SetEnabled(true);
    while (!Loop.Quitting())
        Body();
}

TEST_F(WebEngine, AListenerMayReadThePageAtOnce) {
    Server.Pages["/"] = "<p>read";
    // An engine that cannot answer while it is listened to would take this long.
    constexpr std::chrono::milliseconds patience = 2min;
    Browser.SetPatience(patience);
    bool read = false;
    QElapsedTimer waited;
    waited.start();
    QObject::connect(&Browser, &EmbeddedBrowser::ProgressChange, [&] { read = Body().contains(u"read") || read; });
    ASSERT_TRUE(Load(Server.Address()));
    EXPECT_TRUE(Comes([&] { return read; }));
    EXPECT_LT(waited.elapsed(), patience.count());
}

TEST_F(WebEngine, KeepsItsProfileWhereItIsTold) {
    QTemporaryDir folder;
    Server.Pages["/"] = "<p>kept";
    {
        WebEngineBrowser browser(Loop, folder.path());
        browser.Navigate(Server.Address());
        EXPECT_TRUE(Comes([&] { return !browser.Busy(); }));
        browser.ClearCache();
        EXPECT_TRUE(browser.BodyOuterHtml(MarkupForm::Standard).contains(u"kept"));
    }
    EXPECT_FALSE(QDir(folder.path()).isEmpty());
    Comes([&] { return folder.remove(); }); // the engine still writes for a moment
}

} // namespace
} // namespace Brindle
