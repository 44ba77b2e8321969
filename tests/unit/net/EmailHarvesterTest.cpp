#include "net/EmailHarvester.h"

#include "HarvestBench.h"
#include "PrintTo.h"
#include "net/EmailSearch.h"

#include <QRegularExpression>

#include <gtest/gtest.h>
#include <random>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;
using Test::HarvestBench;

QStringList FoundByExpression(const QString& text) {
    static const QRegularExpression expression(uR"([_a-zA-Z\d\-\.]+@[_a-zA-Z\d\-]+(\.[_a-zA-Z\d\-]+)+)"_s);
    QStringList found;
    for (auto match = expression.globalMatch(text); match.hasNext();)
        found.append(match.next().captured());
    return found;
}

TEST(FindEmails, FindsWhatTheExpressionFinds) {
    std::mt19937 random(11);
    for (int round = 0; round < 20'000; ++round) {
        QString text;
        for (auto length = random() % 24; length > 0; --length)
            text.append(QChar(u"aZ9_-..@@ \u00E9\u0663"[random() % 12]));
        ASSERT_EQ(FindEmails(text), FoundByExpression(text)) << text.toStdString();
    }
}

TEST(FindEmails, LooksAtEveryCharacterAFewTimesOnly) {
    // An expression that starts anew at every letter would take hours here.
    QString letters(5'000'000, u'a');
    EXPECT_TRUE(FindEmails(letters).isEmpty());
    letters += u"@b.c";
    EXPECT_EQ(FindEmails(letters).size(), 1);
    EXPECT_TRUE(FindEmails(u"a@"_s.repeated(1'000'000)).isEmpty());
}

struct Site {
    HarvestBench Bench{SiteCode::UsYellowPages};
    EmailHarvester Harvester{Bench.State, Bench.Options, Bench.Pages};
    QString Emails = u"as it was"_s;
    Site() { Bench.Options.cExtractEmails = true; }
    void Search() { Harvester.GetEmailsFromWebsite(u"http://a.test"_s, Emails); }
};

TEST(EmailHarvester, CollectsFromTheStartPageAndItsContactPages) {
    Site site;
    site.Bench.Pages.Pages = {
        {u"http://a.test"_s,
         u"info@a.test <a HREF='http://a.test/p1'>Customer <b>Service</b></a> <a href=\"http://a.test/CONTACT\">x</a>"
         u"<a href=\"contact.html\">y</a> <a href='https://a.test/contact'>z</a><a href=\"http://a.test/other\">w</a>"
         u"<a href=\"http://a.test/contact\">again</a><a href=''>help</a><a href='http://a.test/p2'>CUSTOMER "
         u"SERVICE</a>"
         u"<a href=\"/http://a.test/help\">slash</a>"_s},
        {u"http://a.test/CONTACT"_s, u"INFO@a.test second.name@mail.a.test no@dot word@"_s},
        {u"http://a.test/p2"_s, u"third@a.test"_s},
    };
    site.Search();
    EXPECT_EQ(site.Emails, u"info@a.test;second.name@mail.a.test;third@a.test"_s);
    EXPECT_EQ(site.Harvester.ContactPagesList.Texts(),
              (QStringList{u"http://a.test/CONTACT"_s, u"/contact.html"_s, u"/https://a.test/contact"_s,
                           u"http://a.test/p2"_s, u"http://a.test/help"_s}));
    EXPECT_EQ(site.Bench.Pages.Fetched.first(), u"http://a.test"_s);

    // The next website starts with empty lists.
    site.Bench.Pages.Pages = {{u"http://a.test"_s, u"nothing"_s}};
    site.Search();
    EXPECT_EQ(site.Emails, QString());
}

TEST(EmailHarvester, TakesTheQuotingThatStandsFirst) {
    struct Case {
        QString Page;
        QStringList Pages;
    };
    const Case cases[] = {
        {u"<a href='http://1/help'>a</a><a href=\"http://2/help\">b</a>"_s, {u"http://1/help"_s, u"http://2/help"_s}},
        {u"<a href=\"http://1/help\">a</a><a href='http://2/help'>b</a>"_s, {u"http://1/help"_s, u"http://2/help"_s}},
        {u"<a href=\"http://1/help'>a</a>"_s, {}},                                  // never closed
        {u"<a href=''>help</a><a href='http://2/x'>help</a>"_s, {u"http://2/x"_s}}, // an empty link takes no text
    };
    for (const Case& c : cases) {
        Site site;
        site.Harvester.FindContactPages(c.Page);
        EXPECT_EQ(site.Harvester.ContactPagesList.Texts(), c.Pages) << c.Page.toStdString();
    }
}

TEST(EmailHarvester, WritesNothingUnlessItRunsToTheEnd) {
    {
        Site site; // the start page cannot be fetched
        site.Search();
        EXPECT_EQ(site.Emails, u"as it was"_s);
    }
    for (const int stopAt : {0, 1, 2}) {
        Site site;
        site.Bench.Pages.Pages = {
            {u"http://a.test"_s, u"i@a.test <a href='http://b/help'>x</a><a href='http://c/help'>y</a>"_s},
            {u"http://b/help"_s, u"j@a.test"_s}};
        site.Bench.State.ShouldStop = stopAt == 0;
        site.Bench.Pages.OnFetch = [&] { site.Bench.State.ShouldStop = site.Bench.Pages.Fetched.size() >= stopAt; };
        site.Search();
        EXPECT_EQ(site.Emails, u"as it was"_s);
        EXPECT_EQ(site.Bench.Pages.Fetched.size(), stopAt);
    }
    Site off; // the option is off: the start page is fetched, nothing is collected
    off.Bench.Options.cExtractEmails = false;
    off.Bench.Pages.Pages = {{u"http://a.test"_s, u"i@a.test"_s}};
    off.Search();
    EXPECT_EQ(off.Emails, QString());
    EXPECT_EQ(off.Bench.Pages.Fetched.size(), 1);
}

TEST(EmailHarvester, APageOfLinksTakesTimeInProportion) {
    Site site;
    site.Harvester.FindContactPages(u"<a href=\"http://a.test/contact%1\">Kontakt</a> "_s.repeated(100'000));
    EXPECT_EQ(site.Harvester.ContactPagesList.Texts().size(), 1);
    site.Harvester.FindContactPages(u"href=\""_s.repeated(200'000));
}

} // namespace
} // namespace Brindle
