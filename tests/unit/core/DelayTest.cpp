#include "core/Delay.h"

#include "VirtualLoop.h"
#include "core/QtMessageLoop.h"

#include <QCoreApplication>
#include <QTimer>

#include <ctime>
#include <gtest/gtest.h>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace Brindle {
namespace {

using Test::VirtualLoop;

// What this program has used of the processor.
double ProcessorSeconds() {
#ifdef Q_OS_WIN
    // Windows' own std::clock is the clock on the wall.
    FILETIME started{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    GetProcessTimes(GetCurrentProcess(), &started, &ended, &kernel, &user);
    const auto seconds = [](const FILETIME& time) {
        return static_cast<double>((static_cast<quint64>(time.dwHighDateTime) << 32) | time.dwLowDateTime) / 1e7;
    };
    return seconds(kernel) + seconds(user);
#else
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
#endif
}

struct Wait {
    quint32 StartTick;
    qint32 Ms;
    double Pace;
    qint64 Expected;
};

TEST(Delay, WaitsByTheArithmeticOfTheTickCounter) {
    const Wait cases[] = {
        {0, 2000, 1.0, 2000},           {5, 0, 1.0, 0}, {5, -7, 1.0, 0}, {0, 2000, 0.25, 500}, {0, 2000, 0.0, 0},
        {0x7FFFFFF0U, 1000, 1.0, 1000}, // the end lies past 2^31, the start does not
        {0x80000000U, 1000, 1.0, 0},    // a start past 2^31 reads as negative: one round
        {0xFFFFFFF0U, 1000, 1.0, 0},
    };
    for (const Wait& c : cases) {
        VirtualLoop loop(c.StartTick);
        loop.SetPace(c.Pace);
        Delay(loop, c.Ms);
        EXPECT_EQ(loop.Now(), c.Expected) << c.StartTick << " " << c.Ms;
        EXPECT_GE(loop.Pumps, 1);
    }
}

TEST(Delay, HandlesMessagesWhenTheyFallDue) {
    VirtualLoop loop;
    qint64 seen = -1;
    loop.Post(300, [&] { seen = loop.Now(); });
    Delay(loop, 1000);
    EXPECT_EQ(seen, 300);
    EXPECT_EQ(loop.Now(), 1000);
}

TEST(Delay, EndsWhenTheProgramEnds) {
    VirtualLoop loop;
    loop.Post(300, [&] { loop.Quit(); });
    Delay(loop, 1000);
    EXPECT_EQ(loop.Now(), 300);
    BlockingDelay(loop, 1000);
    EXPECT_EQ(loop.Blocked, 0);
}

TEST(QtMessageLoop, WaitsWithoutUsingTheProcessorAndWakesForMessages) {
    int argc = 0;
    const QCoreApplication app(argc, nullptr);
    QtMessageLoop loop;
    int ticks = 0;
    const auto timer = loop.CreateTimer(10, [&] { ++ticks; });
    timer->SetEnabled(true);
    const double before = ProcessorSeconds();
    Delay(loop, 200);
    EXPECT_GE(loop.TickCount(), 200U);
    EXPECT_GT(ticks, 0);
    EXPECT_LT(ProcessorSeconds() - before, 0.1); // a busy loop would have used all of it
    timer->SetEnabled(false);
    QTimer::singleShot(0, [&] { loop.Quit(); });
    Delay(loop, 3'600'000); // returns because of the message
    EXPECT_TRUE(loop.Quitting());
}

// An engine posts its answer while the question is still being asked inside of another posted event.
TEST(QtMessageLoop, DeliversWhatWasPostedTogetherWithTheEventThatWaits) {
    int argc = 0;
    const QCoreApplication app(argc, nullptr);
    QtMessageLoop loop;
    QObject receiver;
    bool answered = false;
    bool answeredInTime = false;
    QMetaObject::invokeMethod(
        &receiver,
        [&] {
            loop.WaitForMessage(5000);
            answeredInTime = answered;
        },
        Qt::QueuedConnection);
    QMetaObject::invokeMethod(
        &receiver, [&] { answered = true; }, Qt::QueuedConnection);
    while (!answered)
        loop.WaitForMessage({});
    EXPECT_TRUE(answeredInTime);
}

} // namespace
} // namespace Brindle
