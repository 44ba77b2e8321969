#pragma once

#include "core/MessageLoop.h"

#include <QElapsedTimer>

#include <functional>
#include <memory>

namespace Brindle {

/// The message loop of the running program: Qt's event dispatcher.
class QtMessageLoop : public MessageLoop {
public:
    /// The system's tick count, 32-bit milliseconds.
    using TickSource = std::function<quint32()>;

    /// Without a source, ticks are counted from the construction.
    explicit QtMessageLoop(TickSource ticks = {});
    ~QtMessageLoop() override;
    quint32 TickCount() const override;
    void ProcessMessages() override;
    void WaitForMessage(std::optional<qint64> ms) override;
    void BlockFor(qint64 ms) override;
    std::unique_ptr<Timer> CreateTimer(qint32 intervalMs, std::function<void()> onTick) override;
    /// Also wakes a wait that is under way.
    void Quit() override;

    /// Called before every turn and every wait: whatever must not be kept back while others have their turn. May be
    /// empty.
    std::function<void()> BeforeTurn;
    /// From now on `ProcessMessages` does nothing until `ms` milliseconds have passed since the last turn, for work in
    /// which hardly anything can be pending. Waits are not affected, nor is anything once the program is ending.
    void TurnAtMostEvery(qint64 ms);

private:
    class Counter;

    void Turn();

    std::unique_ptr<Counter> counter_;
    TickSource ticks_;
    qint64 turnInterval_ = 0;
    QElapsedTimer sinceTurn_;
};

} // namespace Brindle
