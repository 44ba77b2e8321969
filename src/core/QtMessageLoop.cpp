#include "QtMessageLoop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include <algorithm>

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

} // namespace

QtMessageLoop::QtMessageLoop() {
    clock_.start();
}

quint32 QtMessageLoop::TickCount() const {
    return static_cast<quint32>(clock_.elapsed());
}

void QtMessageLoop::ProcessMessages() {
    QCoreApplication::processEvents();
}

void QtMessageLoop::WaitForMessage(std::optional<qint64> ms) {
    if (Quitting())
        return;
    QTimer deadline;
    if (ms) {
        if (*ms <= 0)
            return ProcessMessages();
        deadline.setSingleShot(true);
        deadline.setTimerType(Qt::PreciseTimer);
        deadline.start(static_cast<int>(std::min<qint64>(*ms, 60'000)));
    }
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void QtMessageLoop::BlockFor(qint64 ms) {
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
