#include "net/Robots.h"

#include "FetchingFixture.h"

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;
using Test::Fetching;
using Test::Header;
using Test::Http;
using Test::LoopbackServer;

TEST(RobotsRules, TheLongestRuleOfTheRobotsOwnGroupCounts) {
    struct Case {
        const char* Text;
        const char* Allowed; // paths, separated by blanks
        const char* Refused;
    };
    const Case cases[] = {
        {"", "/ /a", ""},
        {"User-agent: *\nDisallow:", "/ /a", ""},
        {"User-agent: *\nDisallow: /", "/robots.txt", "/ /a"},
        {"User-agent: *\nDisallow: /a\nAllow: /a/b", "/ /A /b /a/b /a/bc", "/a /ab /a/c /a?x"},
        {"User-agent: *\nDisallow: /a\nAllow: /a", "/a", ""}, // equally long: allowed
        {"User-agent: *\nDisallow: /\n\nUser-agent: brindle/2.0\nDisallow: /x", "/ /a", "/x"},
        {"User-agent: Brindle\nAllow: /\nUser-agent: Brindlebot\nDisallow: /", "/ /a", ""},
        {"User-agent: other\nUser-agent: BRINDLE\nCrawl-delay: 9\nDisallow: /a\nUser-agent: *\nDisallow: /b", "/b",
         "/a"},
        {"User-agent: Brindle\nDisallow: /a\nUser-agent: x\nDisallow: /b\nUser-agent: Brindle\nDisallow: /c", "/b",
         "/a /c"}, // groups of one robot are one
        {"\xEF\xBB\xBFuser-AGENT : *  # all\r\rDISALLOW:/a # not this\r\nnonsense\r\nDisallow /b", "/b", "/a"},
        {"Disallow: /a\nUser-agent: *\nSitemap: /s\nDisallow: /b", "/a", "/b"}, // a rule without a group
        {"User-agent: *\nDisallow: /*.php$\nDisallow: /*/x*y\nDisallow: *z", "/a.php5 /x/y /a.php?b",
         "/a.php /b/a.php /a/x/y /a/xy/q /q/z1"},
        {"User-agent: *\nDisallow: /a/$\nDisallow: /b*$", "/a /a/c", "/a/ /b /bc"},
        {"User-agent: *\nDisallow: /caf\xC3\xA9\nDisallow: /%7Ejoe/%2f\nDisallow: /a%2fb", "/~joe/ /a/b",
         "/caf%C3%A9 /caf%c3%a9s /~joe/%2F /%7ejoe/%2Fx /a%2Fb"},
    };
    for (const Case& c : cases) {
        const RobotsRules rules(c.Text, "Brindle");
        for (const QByteArray& path : QByteArray(c.Allowed).split(' '))
            EXPECT_TRUE(path.isEmpty() || rules.Allows(path)) << c.Text << " | " << path.data();
        for (const QByteArray& path : QByteArray(c.Refused).split(' '))
            EXPECT_FALSE(!path.isEmpty() && rules.Allows(path)) << c.Text << " | " << path.data();
    }
}

TEST(RobotsRules, ReadsFiveHundredKibibytes) {
    const QByteArray head = "User-agent: *\nDisallow: /a\n";
    const QByteArray filler(500 * 1024 - head.size() - 14, '#');
    EXPECT_FALSE(RobotsRules(QByteArray(head + filler + "\nDisallow: /b\n"), "Brindle").Allows("/b"));
    EXPECT_TRUE(RobotsRules(QByteArray(head + filler + "##\nDisallow: /b\n"), "Brindle").Allows("/b"));
    // A hostile file takes time in proportion.
    QByteArray stars = "User-agent: *\n";
    while (stars.size() < 500 * 1024)
        stars += "Disallow: /" + QByteArray("a*").repeated(40) + "b$\n";
    EXPECT_TRUE(RobotsRules(stars, "Brindle").Allows(QByteArray("/" + QByteArray(2000, 'a'))));
}

TEST_F(Fetching, RobotsAreAskedOncePerServer) {
    QByteArray answer = Http("User-agent: brindle\nDisallow: /private");
    LoopbackServer server([&](const QByteArray&) { return LoopbackServer::Answer{answer}; });
    qint64 now = 1000;
    RobotsCache cache([this](const QString& url) { return fetcher.FetchRobots(url); }, [&now] { return now; });
    EXPECT_EQ(cache.WhyNot(QString(server.Base() + u"/list?page=1")), QString());
    const QString refusal = cache.WhyNot(QString(server.Base() + u"/x/../private/y"));
    EXPECT_TRUE(refusal.contains(u"does not allow")) << refusal.toStdString();
    ASSERT_EQ(server.Requests().size(), 1);
    EXPECT_TRUE(server.Requests()[0].startsWith("GET /robots.txt HTTP/1.1"));
    EXPECT_TRUE(Header(server.Requests()[0], "User-Agent").contains("Brindle/"));

    struct Case {
        QByteArray Answer;
        bool Allowed;
    };
    const Case cases[] = {
        {Http("User-agent: *\nDisallow: /", "404 Not Found"), true}, // no such file: no rules
        {Http("", "403 Forbidden"), true},
        {Http("", "503 Busy"), false}, // there may be one
        {"", false},
        {Http("User-agent: *\nDisallow: /p\n" + QByteArray(600 * 1024, '#')), false}, // too long: what fits counts
    };
    for (const Case& c : cases) {
        now += 25LL * 3600 * 1000;
        answer = c.Answer;
        EXPECT_EQ(cache.WhyNot(QString(server.Base() + u"/private")).isEmpty(), c.Allowed) << c.Answer.left(60).data();
    }
}

} // namespace
} // namespace Brindle
