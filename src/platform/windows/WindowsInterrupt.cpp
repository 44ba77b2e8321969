#include "platform/Interrupt.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <thread>
#include <windows.h>

namespace Brindle {

namespace {

std::atomic<bool> interrupted{false};
std::atomic<int> living{0};

extern "C" void OnSignal(int number) {
    if (interrupted.exchange(true))
        std::_Exit(130);
    std::signal(number, OnSignal); // the handler is good for one signal
}

} // namespace

class Interrupt::Impl {
public:
    explicit Impl(std::function<void()> onInterrupt) : onInterrupt_(std::move(onInterrupt)) {
        if (living++ == 0)
            interrupted = false;
        // The handler runs on a thread of its own, which cannot wake Qt's loop; a slow timer looks after it.
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
            if (interrupted) {
                timer_.stop();
                onInterrupt_();
            }
        });
        timer_.start(50);
        previous_ = std::signal(SIGINT, OnSignal);
    }

    ~Impl() {
        std::signal(SIGINT, previous_);
        --living;
    }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

private:
    std::function<void()> onInterrupt_;
    void (*previous_)(int) = SIG_DFL;
    QTimer timer_;
};

Interrupt::Interrupt(std::function<void()> onInterrupt) : impl_(std::make_unique<Impl>(std::move(onInterrupt))) {}

Interrupt::~Interrupt() = default;

bool Interrupt::Happened() const {
    return interrupted;
}

void InterruptWhenInputEnds() {
    std::thread([] {
        const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
        char bytes[256];
        for (DWORD count = 1; count > 0;)
            if (!ReadFile(input, bytes, sizeof bytes, &count, nullptr))
                break;
        interrupted = true;
    }).detach();
}

} // namespace Brindle
