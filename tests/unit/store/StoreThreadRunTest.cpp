#include "store/StoreThreadRun.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>

using namespace Brindle;
using namespace std::chrono_literals;

namespace {

// What the end of a program takes apart, and takes its time for it.
struct TakenApart {
    std::atomic<bool> IsThere = true;
    ~TakenApart() {
        IsThere = false;
        std::this_thread::sleep_for(100ms);
    }
};

[[noreturn]] void EndWithAThreadAtWork() {
    std::atomic<bool> works = false;
    std::thread thread([&works] {
        const StoreThreadRun run;
        static TakenApart used;
        for (;; works = true) {
            StoreThreadRun::StandStillAtTheEnd();
            if (!used.IsThere)
                std::_Exit(7);
        }
    });
    while (!works)
        std::this_thread::sleep_for(1ms);
    StoreThreadRun::Leave(std::move(thread));
    std::exit(0);
}

TEST(StoreThreadRun, AThreadThatWasLeftUsesNothingThatTheProgramsEndTakesApart) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(EndWithAThreadAtWork(), testing::ExitedWithCode(0), "");
}

} // namespace
