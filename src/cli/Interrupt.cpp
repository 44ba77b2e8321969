#include "cli/Interrupt.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <csignal>
#include <cstdlib>

#ifdef Q_OS_UNIX
#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>
#endif

namespace Brindle {

namespace {

std::atomic<bool> interrupted{false};
#ifdef Q_OS_UNIX
std::atomic<int> wakePipe{-1};
#endif

extern "C" void OnSignal(int number) {
    if (interrupted.exchange(true))
        std::_Exit(130);
#ifdef Q_OS_UNIX
    (void)number;
    // A byte in the pipe wakes the event loop; only such calls are allowed in a signal handler.
    const char byte = 0;
    (void)!write(wakePipe.load(), &byte, 1);
#else
    std::signal(number, OnSignal); // the handler is good for one signal there
#endif
}

} // namespace

class Interrupt::Impl {
public:
    explicit Impl(std::function<void()> onInterrupt) : onInterrupt_(std::move(onInterrupt)) {
        interrupted = false;
#ifdef Q_OS_UNIX
        if (pipe(pipe_) == 0) {
            fcntl(pipe_[1], F_SETFL, O_NONBLOCK);
            fcntl(pipe_[0], F_SETFD, FD_CLOEXEC);
            fcntl(pipe_[1], F_SETFD, FD_CLOEXEC);
            wakePipe = pipe_[1];
            notifier_ = std::make_unique<QSocketNotifier>(pipe_[0], QSocketNotifier::Read);
            QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] {
                notifier_->setEnabled(false);
                onInterrupt_();
            });
        }
#else
        // The handler runs on a thread of its own there, which cannot wake Qt's loop; a slow timer looks after it.
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
            if (interrupted) {
                timer_.stop();
                onInterrupt_();
            }
        });
        timer_.start(50);
#endif
        previous_ = std::signal(SIGINT, OnSignal);
    }

    ~Impl() {
        std::signal(SIGINT, previous_);
#ifdef Q_OS_UNIX
        notifier_.reset();
        wakePipe = -1;
        for (const int end : pipe_)
            if (end >= 0)
                close(end);
#endif
    }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

private:
    std::function<void()> onInterrupt_;
    void (*previous_)(int) = SIG_DFL;
#ifdef Q_OS_UNIX
    int pipe_[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> notifier_;
#else
    QTimer timer_;
#endif
};

Interrupt::Interrupt(std::function<void()> onInterrupt) : impl_(std::make_unique<Impl>(std::move(onInterrupt))) {}

Interrupt::~Interrupt() = default;

bool Interrupt::Happened() const {
    return interrupted;
}

} // namespace Brindle
