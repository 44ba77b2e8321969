#pragma once

#include "core/MessageLoop.h"

#include <map>
#include <vector>

namespace Brindle::Test {

/// A message loop on a clock of its own: a wait moves the clock to the next thing that is due and costs no time.
/// Messages are actions posted for a moment of that clock, and timers. Where a QCoreApplication exists, Qt's events are
/// handled too, so transfers over real sockets go on; a wait without a time limit waits for them.
class VirtualLoop : public MessageLoop {
public:
    explicit VirtualLoop(quint32 startTick = 0) : tickOffset_(startTick) {}

    quint32 TickCount() const override { return static_cast<quint32>(now_ + tickOffset_); }
    void ProcessMessages() override;
    void WaitForMessage(std::optional<qint64> ms) override;
    void BlockFor(qint64 ms) override;
    std::unique_ptr<Timer> CreateTimer(qint32 intervalMs, std::function<void()> onTick) override;

    /// Milliseconds since the loop was made.
    qint64 Now() const { return now_; }
    /// Runs `action` when the clock stands at `at` or later and messages are handled.
    void Post(qint64 at, std::function<void()> action);
    /// Handles messages and moves the clock on until it stands at `until`, or nothing is left to happen.
    void RunUntil(qint64 until);
    /// Runs until no message is posted and no timer enabled, at most `limit` milliseconds.
    void RunToIdle(qint64 limit = 24LL * 3600 * 1000);

    /// Milliseconds spent in waits without messages.
    qint64 Blocked = 0;
    /// How often messages were handled.
    qint64 Pumps = 0;

private:
    class VirtualTimer;
    bool RunDue();
    std::optional<qint64> NextDue() const;

    qint64 now_ = 0;
    quint32 tickOffset_;
    std::multimap<qint64, std::function<void()>> posted_;
    std::vector<VirtualTimer*> timers_;
};

} // namespace Brindle::Test
