#include "core/QtMessageLoop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace Brindle {

namespace {

class QtLoopTimer : public MessageLoop::Timer {
public:
    QtLoopTimer(const MessageLoop& loop, qint32 intervalMs, std::function<void()> onTick)
        : loop_(loop), intervalMs_(intervalMs) {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, std::move(onTick));
    }
    void SetEnabled(bool enabled) override {
        if (!enabled)
            timer_.stop();
        else if (!timer_.isActive())
            // Never 0: a timer that is always due would keep the processor busy.
            timer_.start(std::max(1, static_cast<int>(qRound64(intervalMs_ * loop_.Pace()))));
    }
    bool Enabled() const override { return timer_.isActive(); }

private:
    const MessageLoop& loop_;
    qint32 intervalMs_;
    QTimer timer_;
};

QtMessageLoop::TickSource TicksFromNow() {
    QElapsedTimer clock;
    clock.start();
    return [clock] { return static_cast<quint32>(clock.elapsed()); };
}

} // namespace

// Counts the messages of this thread as they are handed out.
class QtMessageLoop::Counter : public QObject {
public:
    quint64 Count = 0;
    bool Waiting = false;
    bool eventFilter(QObject*, QEvent*) override {
        ++Count;
        // Not every system's dispatcher ends a wait for what was posted within the program.
        if (std::exchange(Waiting, false))
            QAbstractEventDispatcher::instance()->interrupt();
        return false;
    }
};

QtMessageLoop::QtMessageLoop(TickSource ticks)
    : counter_(std::make_unique<Counter>()), ticks_(ticks ? std::move(ticks) : TicksFromNow()) {
    if (QCoreApplication* const application = QCoreApplication::instance())
        application->installEventFilter(counter_.get());
}

QtMessageLoop::~QtMessageLoop() = default;

quint32 QtMessageLoop::TickCount() const {
    return ticks_();
}

void QtMessageLoop::TurnAtMostEvery(qint64 ms) {
    turnInterval_ = ms;
    sinceTurn_.start();
}

void QtMessageLoop::ProcessMessages() {
    if (turnInterval_ > 0 && sinceTurn_.elapsed() < turnInterval_ && !Quitting())
        return;
    Turn();
}

void QtMessageLoop::Turn() {
    if (BeforeTurn)
        BeforeTurn();
    if (turnInterval_ > 0)
        sinceTurn_.start();
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

void QtMessageLoop::WaitForMessage(std::optional<qint64> ms) {
    if (Quitting())
        return;
    if (ms && *ms <= 0)
        return Turn();
    // Within the handling of one queued message, the dispatcher sleeps although others are queued behind it.
    const quint64 before = counter_->Count;
    Turn();
    if (counter_->Count != before)
        return;
    QTimer deadline;
    if (ms) {
        deadline.setSingleShot(true);
        deadline.setTimerType(Qt::PreciseTimer);
        deadline.start(static_cast<int>(std::min<qint64>(*ms, 60'000)));
    }
    counter_->Waiting = true;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    counter_->Waiting = false;
}

void QtMessageLoop::BlockFor(qint64 ms) {
    if (BeforeTurn)
        BeforeTurn();
    QThread::msleep(static_cast<unsigned long>(ms));
}

std::unique_ptr<MessageLoop::Timer> QtMessageLoop::CreateTimer(qint32 intervalMs, std::function<void()> onTick) {
    return std::make_unique<QtLoopTimer>(*this, intervalMs, std::move(onTick));
}

void QtMessageLoop::Quit() {
    MessageLoop::Quit();
    if (QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance())
        dispatcher->wakeUp();
}

} // namespace Brindle
