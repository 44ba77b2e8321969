#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>
#include <optional>

namespace Brindle {

/// Port: the program's one event loop, its clock and its timers. The real one is `QtMessageLoop`; tests use a clock of
/// their own on which a wait costs no time.
class MessageLoop {
public:
    /// Calls back every interval while it is enabled; enabling it starts the interval anew, an enabled timer goes on
    /// undisturbed.
    class Timer {
    public:
        virtual ~Timer() = default;
        virtual void SetEnabled(bool enabled) = 0;
        virtual bool Enabled() const = 0;
    };

    virtual ~MessageLoop() = default;

    /// Milliseconds since some start, 32 bits, wrapping round.
    virtual quint32 TickCount() const = 0;
    /// Handles every message that is pending and returns.
    virtual void ProcessMessages() = 0;
    /// Blocks until a message has been handled, or for `ms` milliseconds of the loop's clock, without using the
    /// processor. Without a time it waits for a message only.
    virtual void WaitForMessage(std::optional<qint64> ms) = 0;
    /// Blocks for `ms` milliseconds without handling any message.
    virtual void BlockFor(qint64 ms) = 0;
    /// A timer, disabled at first.
    virtual std::unique_ptr<Timer> CreateTimer(qint32 intervalMs, std::function<void()> onTick) = 0;

    /// What every wait is multiplied with, 0 to 1; 1 is real time.
    double Pace() const { return pace_; }
    void SetPace(double pace) { pace_ = pace; }

    /// The program is ending: from now on every wait and transfer returns as soon as it can.
    bool Quitting() const { return quitting_; }
    virtual void Quit() { quitting_ = true; }

private:
    double pace_ = 1.0;
    bool quitting_ = false;
};

} // namespace Brindle
