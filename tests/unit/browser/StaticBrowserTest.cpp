#include "browser/StaticBrowser.h"

#include "PageServer.h"
#include "PrintTo.h"
#include "core/QtMessageLoop.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace Brindle {

using namespace Qt::StringLiterals;
namespace {

using Test::PageServer;

class StaticPages : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static int argc = 1;
        static char name[] = "test";
        static char* argv[] = {name, nullptr};
        static const QCoreApplication application(argc, argv);
    }

    StaticPages() {
        QObject::connect(&Browser, &EmbeddedBrowser::NavigateComplete,
                         [this](const QString& address) { Completed.append(address); });
    }

    // The limit only ends a test that fails.
    bool Settles() {
        QElapsedTimer waited;
        waited.start();
        while (Browser.Busy() && waited.elapsed() < 20'000)
            Loop.WaitForMessage(50);
        return !Browser.Busy();
    }

    bool Load(const QString& path) {
        Browser.Navigate(Server.Address(path));
        return Settles();
    }

    QString Body() { return Browser.BodyOuterHtml(MarkupForm::Standard); }

    QtMessageLoop Loop;
    PageServer Server;
    StaticBrowser Browser;
    QStringList Completed;
};

TEST_F(StaticPages, AreEmptyUntilLoadedAndThenKnown) {
    EXPECT_EQ(Body(), QString());
    EXPECT_EQ(Browser.LinkCount(), 0);
    Server.Pages["/"] = "<body><p id=a>\xc3\xa8";
    Browser.Navigate(Server.Address().mid(7)); // without scheme
    EXPECT_TRUE(Browser.Busy());
    EXPECT_EQ(Body(), QString());
    ASSERT_TRUE(Settles());
    EXPECT_EQ(Body(), u"<body><p id=\"a\">\u00e8</p></body>"_s);
    EXPECT_EQ(Browser.BodyOuterHtml(MarkupForm::Legacy), u"<BODY><P id=a>\u00e8</P></BODY>"_s);
    EXPECT_EQ(Browser.DocumentHtml(), u"<html><head></head><body><p id=\"a\">\u00e8</p></body></html>"_s);
    EXPECT_EQ(Browser.LocationAddress(), Server.Address());
    EXPECT_EQ(Completed, QStringList{Server.Address()});
    Browser.Navigate(u"about:blank"_s);
    EXPECT_FALSE(Browser.Busy());
    EXPECT_EQ(Body(), u"<body></body>"_s);
    EXPECT_EQ(Browser.LocationAddress(), u"about:blank"_s);
}

TEST_F(StaticPages, RedirectsCookiesAndBaseAreFollowed) {
    Server.Headers["/start"] = "Status: 302 Found\r\nLocation: /dir/page?x=1\r\nSet-Cookie: seen=yes\r\n";
    Server.Pages["/dir/page?x=1"] = "<base href=\"/other/\"><a href=next>n</a><a href='#part'>p</a>";
    Server.Pages["/other/next"] = "<p>arrived";
    ASSERT_TRUE(Load(u"/start"_s));
    EXPECT_EQ(Browser.LocationAddress(), Server.Address(u"/dir/page?x=1"_s));
    Browser.ClickLink(0);
    ASSERT_TRUE(Settles());
    EXPECT_TRUE(Body().contains(u"arrived"));
    const QByteArray request = Server.Requests.last();
    EXPECT_TRUE(request.startsWith("GET /other/next "));
    EXPECT_TRUE(request.contains("\r\nCookie: seen=yes\r\n"));
    const QByteArray from = Server.Address(u"/dir/page?x=1"_s).toLatin1();
    EXPECT_TRUE(request.contains(QByteArray("\r\nReferer: " + from + "\r\n")));
}

TEST_F(StaticPages, LinksAreClickedAsInAPage) {
    Server.Pages["/"] = "<a href='javascript:x()'>a</a><a href='mailto:a@b'>b</a><a href='#c'>c</a>"
                        "<a href='/file' download>d</a><a href='/next' target=_blank> Avanti \n\u203a</a>";
    Server.Pages["/next"] = "<p>next";
    ASSERT_TRUE(Load(u"/"_s));
    ASSERT_EQ(Browser.LinkCount(), 5);
    EXPECT_EQ(Browser.LinkInnerText(4), u"Avanti \u203a"_s);
    EXPECT_EQ(Browser.LinkInnerText(5), QString());
    EXPECT_EQ(Browser.LinkInnerText(-1), QString());
    for (const int index : {-1, 0, 1, 2, 3, 5})
        Browser.ClickLink(index);
    EXPECT_FALSE(Browser.Busy());
    EXPECT_EQ(Server.Requests.size(), 1);
    EXPECT_EQ(Browser.LocationAddress(), Server.Address(u"/#c"_s));
    Browser.ClickLink(4);
    ASSERT_TRUE(Settles());
    EXPECT_TRUE(Body().contains(u"next"));
}

TEST_F(StaticPages, HistoryIsWalked) {
    for (const char* path : {"/1", "/2", "/3"}) {
        Server.Pages[path] = QByteArray("<p>page ") + path;
        ASSERT_TRUE(Load(QString::fromLatin1(path)));
    }
    Browser.GoBack();
    ASSERT_TRUE(Settles());
    Browser.GoBack();
    ASSERT_TRUE(Settles());
    EXPECT_TRUE(Body().contains(u"page /1"));
    Browser.GoBack();
    EXPECT_FALSE(Browser.Busy());
    Browser.GoForward();
    ASSERT_TRUE(Settles());
    EXPECT_TRUE(Body().contains(u"page /2"));
    Browser.Navigate(u"about:blank"_s);
    Browser.GoForward();
    EXPECT_EQ(Browser.LocationAddress(), u"about:blank"_s);
    Browser.GoBack();
    ASSERT_TRUE(Settles());
    Server.Pages["/2"] = "<p>new";
    Browser.Refresh();
    ASSERT_TRUE(Settles());
    EXPECT_TRUE(Body().contains(u"new"));
    EXPECT_TRUE(Server.Requests.last().contains("no-cache"));
    ASSERT_TRUE(Load(u"/3#part"_s));
    EXPECT_TRUE(Browser.LocationAddress().endsWith(u"/3#part")) << "a place on the page is no part of the request";
}

TEST_F(StaticPages, StopKeepsThePageBefore) {
    Server.Pages["/"] = "<p>before";
    Server.Pages["/slow"] = "<p>slow";
    ASSERT_TRUE(Load(u"/"_s));
    Browser.Navigate(Server.Address(u"/slow"_s));
    EXPECT_EQ(Body(), QString());
    Browser.Stop();
    EXPECT_FALSE(Browser.Busy());
    EXPECT_TRUE(Body().contains(u"before"));
    // Another load right after: the end of the one that was dropped changes nothing.
    Browser.Navigate(Server.Address(u"/slow"_s));
    ASSERT_TRUE(Load(u"/"_s));
    EXPECT_TRUE(Body().contains(u"before"));
}

TEST_F(StaticPages, FailuresAreNamedInOneLine) {
    ASSERT_TRUE(Load(u"/missing"_s));
    EXPECT_TRUE(Body().contains(u"missing")) << "the page of a 404 is a page";
    EXPECT_EQ(Browser.LastError(), QString());

    Server.Pages["/deep"] = QByteArray("<div>").repeated(100'000);
    ASSERT_TRUE(Load(u"/deep"_s));
    EXPECT_EQ(Body(), QString());
    EXPECT_TRUE(Browser.LastError().startsWith(Server.Address(u"/deep: "_s)));

    Server.Pages["/pdf"] = "%PDF";
    Server.Headers["/pdf"] = "Content-Type: application/pdf\r\n";
    ASSERT_TRUE(Load(u"/pdf"_s));
    EXPECT_EQ(Body(), QString());
    EXPECT_TRUE(Browser.LastError().contains(u"application/pdf"));

    QTcpServer closed;
    closed.listen(QHostAddress::LocalHost);
    const QString refused = u"http://127.0.0.1:%1/"_s.arg(closed.serverPort());
    closed.close();
    Browser.Navigate(refused);
    ASSERT_TRUE(Settles());
    EXPECT_EQ(Body(), QString());
    EXPECT_TRUE(Browser.LastError().startsWith(refused + u": "_s)) << Browser.LastError().toStdString();
    EXPECT_FALSE(Browser.LastError().contains(u'\n'));
    EXPECT_EQ(Browser.LocationAddress(), refused);
    EXPECT_EQ(Completed.last(), refused);

    Browser.Navigate(u"ftp://a.b/"_s);
    EXPECT_TRUE(Browser.LastError().startsWith(u"ftp://a.b/"));
    ASSERT_TRUE(Load(u"/missing"_s));
    EXPECT_EQ(Browser.LastError(), QString());
}

TEST_F(StaticPages, LeadOnlyWhereAPageMay) {
    Server.Pages["/start"] = "<p>start <a href='http://169.254.169.254/'>x</a>";
    Server.Pages["/next"] = "<p>next";
    Server.Headers["/away"] = "Status: 302 Found\r\nLocation: http://10.0.0.1/\r\n";
    ASSERT_TRUE(Load(u"/start"_s));
    EXPECT_EQ(Browser.PeerAddress(), u"127.0.0.1"_s);
    for (const QString& address : {u"file:///etc/hostname"_s, u"data:text/html,x"_s, u"javascript:x"_s}) {
        Browser.Follow(address);
        EXPECT_FALSE(Browser.Busy());
        EXPECT_TRUE(Browser.LastError().startsWith(address)) << Browser.LastError().toStdString();
        EXPECT_TRUE(Body().contains(u"start")); // the page stays
    }
    const auto expectRefused = [this] {
        ASSERT_TRUE(Settles());
        EXPECT_TRUE(Browser.LastError().contains(u"may lead")) << Browser.LastError().toStdString();
        ASSERT_TRUE(Load(u"/start"_s));
    };
    Browser.ClickLink(0);
    expectRefused();
    Browser.Follow(u"http://192.168.0.1/"_s);
    expectRefused();
    Browser.Navigate(Server.Address(u"/away"_s));
    expectRefused();
    Browser.Follow(Server.Address(u"/next"_s));
    ASSERT_TRUE(Settles());
    EXPECT_TRUE(Body().contains(u"next")) << Browser.LastError().toStdString();
    EXPECT_TRUE(Server.Requests.last().contains(QString(u"Referer: " + Server.Address(u"/start"_s)).toLatin1()));
}

TEST_F(StaticPages, CharactersSetsAndPlainTextAreRead) {
    Server.Pages["/latin"] = "<p>\xe8";
    Server.Headers["/latin"] = "Content-Type: text/html; charset=iso-8859-1\r\n";
    ASSERT_TRUE(Load(u"/latin"_s));
    EXPECT_TRUE(Body().contains(QChar(0xe8)));
    Server.Pages["/text"] = "a <b>";
    Server.Headers["/text"] = "Content-Type: text/plain\r\n";
    ASSERT_TRUE(Load(u"/text"_s));
    EXPECT_TRUE(Body().contains(u"a &lt;b&gt;</pre>"));
    Server.Headers["/none"] = "Status: 204 No Content\r\n";
    ASSERT_TRUE(Load(u"/none"_s));
    EXPECT_TRUE(Body().contains(u"a &lt;b&gt;</pre>"));
}

TEST_F(StaticPages, AgentAndProxyAreUsed) {
    PageServer proxy;
    proxy.Pages["http://directory.example/list"] = "<p>by proxy";
    Browser.SetUserAgent(u"Agent/1"_s);
    Browser.SetProxy({u"127.0.0.1"_s, proxy.serverPort(), ProxyLogin{u"user"_s, u"secret"_s}});
    Browser.Navigate(u"http://directory.example/list"_s);
    ASSERT_TRUE(Settles());
    EXPECT_TRUE(Body().contains(u"by proxy"));
    EXPECT_TRUE(proxy.Requests.last().contains("Proxy-Authorization: Basic dXNlcjpzZWNyZXQ=\r\n"));
    EXPECT_TRUE(proxy.Requests.last().contains("User-Agent: Agent/1\r\n"));
}

TEST_F(StaticPages, AListenerMayNavigateOnAtOnce) {
    Server.Pages["/1"] = "<p>one";
    Server.Pages["/2"] = "<p>two";
    QObject::connect(&Browser, &EmbeddedBrowser::NavigateComplete, [this](const QString& address) {
        if (address.endsWith(u"/1"))
            Browser.Navigate(Server.Address(u"/2"_s));
    });
    ASSERT_TRUE(Load(u"/1"_s));
    EXPECT_TRUE(Body().contains(u"two"));
}

} // namespace
} // namespace Brindle
