#include "store/StoreThreadRun.h"

#include <atomic>
#include <chrono>
#include <cstdlib>

namespace Brindle {

using namespace std::chrono_literals;

namespace {

std::atomic<int> running = 0;
std::atomic<bool> programEnds = false;

void WaitForThreads() {
    programEnds = true;
    for (int i = 0; i < 100 && running > 0; ++i)
        std::this_thread::sleep_for(5ms);
}

} // namespace

StoreThreadRun::StoreThreadRun() {
    ++running;
}

StoreThreadRun::~StoreThreadRun() {
    --running;
}

void StoreThreadRun::StandStillAtTheEnd() {
    if (!programEnds)
        return;
    --running;
    for (;;)
        std::this_thread::sleep_for(1h);
}

void StoreThreadRun::Leave(std::thread thread) {
    // Registered now, it runs before what the thread has used until now is taken apart.
    std::atexit(WaitForThreads);
    thread.detach();
}

} // namespace Brindle
