#include "core/DuplicateKeys.h"

#include <QString>

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>

namespace Brindle {
namespace {

// Against a map, with as many keys coming as going, so that the places of keys that went are taken again.
TEST(DuplicateKeys, HoldWhatWasAddedAndNotRemoved) {
    DuplicateKeys keys;
    std::map<int, int> model;
    qsizetype count = 0;
    std::mt19937 random(7);
    EXPECT_FALSE(keys.Contains(u""));
    keys.RemoveOne(u"never added");
    for (int step = 0; step < 60'000; ++step) {
        const int number = static_cast<int>(random() % (step < 30'000 ? 3'000 : 300));
        const QString key = QString::number(number);
        int& times = model[number];
        if (random() % 2 == 0) {
            keys.Add(key);
            ++times;
            ++count;
        } else {
            keys.RemoveOne(key);
            count -= times > 0 ? 1 : 0;
            times = std::max(times - 1, 0);
        }
        ASSERT_EQ(keys.Contains(key), times > 0) << step;
        ASSERT_EQ(keys.Count(), count);
    }
    for (const auto& [number, times] : model)
        EXPECT_EQ(keys.Contains(QString::number(number)), times > 0) << number;
    keys.Clear();
    EXPECT_EQ(keys.Count(), 0);
    EXPECT_FALSE(keys.Contains(u"1"));
}

} // namespace
} // namespace Brindle
