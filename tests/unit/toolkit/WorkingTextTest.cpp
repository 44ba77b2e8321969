#include "toolkit/WorkingText.h"

#include "PrintTo.h"

#include <gtest/gtest.h>
#include <random>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

struct Cut {
    QStringView Text;
    QStringView Begin;
    QStringView End;
    int Skip;
    QStringView Value;
    QStringView Rest;
};

TEST(WorkingText, CutsBetweenMarkers) {
    const Cut cases[] = {
        {u"x<b>y</b>z", u"<b>", u"</b>", 0, u"y", u"</b>z"},
        {u"x<B>y</b>z", u"<b>", u"</B>", 0, u"y", u"</b>z"}, // letter case does not matter
        {u"xyz", u"<b>", u"</b>", 0, u"", u"xyz"},           // no start: nothing moves
        {u"x<b>yz", u"<b>", u"</b>", 0, u"", u"yz"},         // no end: the start is used up
        {u"a[[bc]]d", u"[", u"]", 1, u"bc", u"]d"},          // the skip counts at both ends
        {u"a[bcd", u"[", u"]", 3, u"", u""},
        {u"a[bcdefg", u"[", u"]", 2, u"", u"efg"}, // an absent end counts as position 0
        {u"a[b]", u"[", u"]", 9, u"", u""},
        {u"ab", u"", u"b", 0, u"", u"ab"}, // an empty marker is nowhere
        {u"a>b", u">", u"", 0, u"", u"b"},
        {u"<<b", u"<", u"<", 0, u"", u"<b"},                              // the end may be the next start
        {u"\u0130<b>\u0131</b>", u"<B>", u"</B>", 0, u"\u0131", u"</b>"}, // folding never moves a position
    };
    for (const Cut& c : cases) {
        WorkingText text(c.Text);
        EXPECT_EQ(text.TakeBetween(c.Begin, c.End, c.Skip).toString(), c.Value.toString()) << c.Text.toUtf8().data();
        EXPECT_EQ(text.Rest().toString(), c.Rest.toString()) << c.Text.toUtf8().data();
        const Marker begin(c.Begin);
        const Marker end(c.End);
        WorkingText again(c.Text);
        EXPECT_EQ(again.TakeBetween(begin, end, c.Skip).toString(), c.Value.toString()) << c.Text.toUtf8().data();
        EXPECT_EQ(again.Rest().toString(), c.Rest.toString()) << c.Text.toUtf8().data();
    }
}

TEST(WorkingText, PresenceIsCaseSensitiveAndCutsAreNot) {
    const Marker tag(u"<H3>");
    const Marker end(u"</H3>");
    WorkingText text(u"<h3>a</h3><H3>b</H3>");
    EXPECT_TRUE(text.Contains(tag));
    EXPECT_EQ(text.Find(tag), 10);
    EXPECT_EQ(text.TakeBetween(tag, end).toString(), u"a"_s); // earlier than where the test found it
}

TEST(WorkingText, AFieldBelongsToTheListingBeforeTheNextOne) {
    const Marker field(u"phone");
    const Marker next(u"title");
    EXPECT_TRUE(WorkingText(u"..phone..title").Belongs(field, next));
    EXPECT_FALSE(WorkingText(u"..title..phone").Belongs(field, next));
    EXPECT_TRUE(WorkingText(u"..phone..").Belongs(field, next));
    EXPECT_FALSE(WorkingText(u"..").Belongs(field, next));
}

// The remembered places must never show: any sequence of cuts, tests and steps back gives what a text that remembers
// nothing gives.
TEST(WorkingText, RememberingIsInvisible) {
    const std::vector<Marker> markers{Marker(u"a"), Marker(u"Ab"), Marker(u"ba"), Marker(u"c"), Marker(u"bcA")};
    std::mt19937 random(7);
    for (int round = 0; round < 400; ++round) {
        QString page;
        for (int i = 0; i < 60; ++i)
            page.append(QChar(u"abcABCxyz"[random() % 9]));
        WorkingText text(page);
        std::vector<qsizetype> places;
        for (int step = 0; step < 30; ++step) {
            const Marker& one = markers[random() % markers.size()];
            const Marker& two = markers[random() % markers.size()];
            ASSERT_EQ(text.Find(one), page.indexOf(one.Text(), text.Position(), Qt::CaseSensitive));
            ASSERT_EQ(text.FindFolded(one), page.indexOf(one.Text(), text.Position(), Qt::CaseInsensitive));
            places.push_back(text.Position());
            if (random() % 5 == 0) {
                text.MoveTo(places[random() % places.size()]);
            } else {
                WorkingText forgetful(page);
                forgetful.MoveTo(text.Position());
                const QString expected = forgetful.TakeBetween(one.Text(), two.Text()).toString();
                ASSERT_EQ(text.TakeBetween(one, two).toString(), expected);
                ASSERT_EQ(text.Position(), forgetful.Position());
            }
        }
    }
}

// Needles longer and shorter than a vector, at every alignment, at the very end of the text.
TEST(Needle, FindsWhatAPlainSearchFinds) {
    std::mt19937 random(3);
    for (int round = 0; round < 3000; ++round) {
        QString page;
        QString literal;
        for (auto i = random() % 90; i > 0; --i)
            page.append(QChar(u"aAbB<\u203A"[random() % 6]));
        for (auto i = 1 + random() % 4; i > 0; --i)
            literal.append(QChar(u"aAbB<\u203A"[random() % 6]));
        const Needle needle(literal);
        const auto from = static_cast<qsizetype>(random() % static_cast<unsigned>(page.size() + 1));
        ASSERT_EQ(needle.FindExact(page, from), page.indexOf(literal, from, Qt::CaseSensitive));
        ASSERT_EQ(needle.FindFolded(page, from), page.indexOf(literal, from, Qt::CaseInsensitive));
    }
}

} // namespace
} // namespace Brindle
