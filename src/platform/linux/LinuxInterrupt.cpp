#include "platform/Interrupt.h"

#include <QObject>
#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <thread>
#include <unistd.h>

namespace Brindle {

namespace {

constexpr int signals[] = {SIGINT, SIGTERM};

std::atomic<bool> interrupted{false};
std::atomic<int> wakePipe{-1}; // of the youngest

// A byte in the pipe wakes the event loop; only such calls are allowed in a signal handler.
void Wake() {
    const char byte = 0;
    (void)!write(wakePipe.load(), &byte, 1);
}

extern "C" void OnSignal(int) {
    if (interrupted.exchange(true))
        std::_Exit(130);
    Wake();
}

void WaitForEndOfInput() {
    char bytes[256];
    for (;;) {
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count == 0 || (count < 0 && errno != EINTR))
            break;
    }
    if (!interrupted.exchange(true))
        Wake();
}

} // namespace

class Interrupt::Impl {
public:
    explicit Impl(std::function<void()> onInterrupt) : onInterrupt_(std::move(onInterrupt)) {
        if (outer_ < 0)
            interrupted = false;
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
        // Managers of services and of clusters end a program by the latter, and mean the same.
        for (size_t i = 0; i < std::size(signals); ++i)
            previous_[i] = std::signal(signals[i], OnSignal);
        if (interrupted)
            Wake(); // it came to an older one
    }

    ~Impl() {
        for (size_t i = 0; i < std::size(signals); ++i)
            std::signal(signals[i], previous_[i]);
        notifier_.reset();
        wakePipe = outer_;
        if (outer_ >= 0 && interrupted)
            Wake();
        for (const int end : pipe_)
            if (end >= 0)
                close(end);
    }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

private:
    std::function<void()> onInterrupt_;
    const int outer_ = wakePipe;
    void (*previous_[std::size(signals)])(int) = {};
    int pipe_[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> notifier_;
};

Interrupt::Interrupt(std::function<void()> onInterrupt) : impl_(std::make_unique<Impl>(std::move(onInterrupt))) {}

Interrupt::~Interrupt() = default;

bool Interrupt::Happened() const {
    return interrupted;
}

void InterruptWhenInputEnds() {
    std::thread(WaitForEndOfInput).detach();
}

} // namespace Brindle
