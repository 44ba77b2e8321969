#include "store/Searches.h"

#include "store/Database.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

TEST(Searches, ThatEndedWaitAgainWhenTheyAreAskedTo) {
    const QTemporaryDir folder;
    Database database(StoreTarget::Parse(folder.filePath(u"s.db"_s)));
    Searches searches(database);
    const auto host = [](const SearchRow&) { return u"a.test"_s; };
    const SearchRow first{.Line = 1, .Site = u"A"_s, .Start = u"http://a.test/1"_s, .What = {}, .Place = {}};
    const SearchRow second{.Line = 2, .Site = u"A"_s, .Start = u"http://a.test/2"_s, .What = {}, .Place = {}};
    EXPECT_EQ(searches.Add(u"l"_s, {first, second}, host), 2);
    EXPECT_EQ(searches.Add(u"l"_s, {first, second}, host), 0);
    const auto failed = searches.Claim(u"w"_s, u"l"_s, 0, 60'000);
    ASSERT_TRUE(failed);
    EXPECT_TRUE(searches.Finish(failed->Id, u"w"_s, SearchState::Failed, u"why"_s, 0));
    EXPECT_EQ(searches.Cancel(), 1);
    EXPECT_EQ(searches.Retry(), 1) << "the failed one, not the one that was called off";
    const auto cancelled = searches.All(u"l"_s, SearchState::Cancelled);
    ASSERT_EQ(cancelled.size(), 1U);
    EXPECT_EQ(searches.Retry({cancelled[0].Id}), 1);
    EXPECT_EQ(searches.All(u"l"_s, SearchState::Waiting).size(), 2U);
}

} // namespace
} // namespace Brindle
