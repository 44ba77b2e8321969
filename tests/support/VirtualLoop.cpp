#include "VirtualLoop.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <algorithm>

namespace Brindle::Test {

class VirtualLoop::VirtualTimer : public MessageLoop::Timer {
public:
    VirtualTimer(VirtualLoop& loop, qint64 interval, std::function<void()> onTick)
        : loop_(loop), interval_(interval), onTick_(std::move(onTick)) {
        loop_.timers_.push_back(this);
    }
    ~VirtualTimer() override { std::erase(loop_.timers_, this); }
    VirtualTimer(const VirtualTimer&) = delete;
    VirtualTimer& operator=(const VirtualTimer&) = delete;

    void SetEnabled(bool enabled) override {
        if (enabled && !due_)
            due_ = loop_.now_ + std::max<qint64>(1, qRound64(static_cast<double>(interval_) * loop_.Pace()));
        else if (!enabled)
            due_.reset();
    }
    bool Enabled() const override { return due_.has_value(); }
    std::optional<qint64> Due() const { return due_; }
    void Fire() {
        due_.reset();
        SetEnabled(true);
        onTick_();
    }

private:
    VirtualLoop& loop_;
    qint64 interval_;
    std::function<void()> onTick_;
    std::optional<qint64> due_;
};

std::unique_ptr<MessageLoop::Timer> VirtualLoop::CreateTimer(qint32 intervalMs, std::function<void()> onTick) {
    return std::make_unique<VirtualTimer>(*this, intervalMs, std::move(onTick));
}

void VirtualLoop::Post(qint64 at, std::function<void()> action) {
    posted_.emplace(at, std::move(action));
}

bool VirtualLoop::RunDue() {
    if (!posted_.empty() && posted_.begin()->first <= now_) {
        const std::function<void()> action = std::move(posted_.begin()->second);
        posted_.erase(posted_.begin());
        action();
        return true;
    }
    for (VirtualTimer* timer : timers_)
        if (timer->Due() && *timer->Due() <= now_) {
            timer->Fire();
            return true;
        }
    return false;
}

std::optional<qint64> VirtualLoop::NextDue() const {
    std::optional<qint64> next;
    if (!posted_.empty())
        next = posted_.begin()->first;
    for (const VirtualTimer* timer : timers_)
        if (timer->Due() && (!next || *timer->Due() < *next))
            next = timer->Due();
    return next;
}

void VirtualLoop::ProcessMessages() {
    ++Pumps;
    while (RunDue()) {
    }
    if (QCoreApplication::instance())
        QCoreApplication::processEvents();
}

void VirtualLoop::WaitForMessage(std::optional<qint64> ms) {
    if (RunDue())
        return;
    if (!ms) {
        // Only the outside world can end this wait.
        if (QCoreApplication::instance())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return;
    }
    const std::optional<qint64> next = NextDue();
    const qint64 deadline = now_ + std::max<qint64>(0, *ms);
    now_ = next && *next < deadline ? std::max(now_, *next) : deadline;
    RunDue();
}

void VirtualLoop::BlockFor(qint64 ms) {
    now_ += ms;
    Blocked += ms;
}

void VirtualLoop::RunUntil(qint64 until) {
    ProcessMessages();
    while (now_ < until) {
        const std::optional<qint64> next = NextDue();
        now_ = next ? std::clamp(*next, now_, until) : until;
        ProcessMessages();
    }
}

void VirtualLoop::RunToIdle(qint64 limit) {
    const qint64 end = now_ + limit;
    ProcessMessages();
    while (const std::optional<qint64> next = NextDue()) {
        if (*next > end)
            return;
        now_ = std::max(now_, *next);
        ProcessMessages();
    }
}

} // namespace Brindle::Test
