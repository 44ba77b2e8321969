#pragma once

#include "MessageLoop.h"

#include <QElapsedTimer>

#include <memory>

namespace Brindle {

/// The message loop of the running program: Qt's event dispatcher. The tick count runs from its construction.
class QtMessageLoop : public MessageLoop {
public:
    QtMessageLoop();
    ~QtMessageLoop() override;
    quint32 TickCount() const override;
    void ProcessMessages() override;
    void WaitForMessage(std::optional<qint64> ms) override;
    void BlockFor(qint64 ms) override;
    std::unique_ptr<Timer> CreateTimer(qint32 intervalMs, std::function<void()> onTick) override;
    /// Also wakes a wait that is under way.
    void Quit() override;

private:
    class Counter;

    std::unique_ptr<Counter> counter_;
    QElapsedTimer clock_;
};

} // namespace Brindle
