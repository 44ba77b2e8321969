#pragma once

#include <thread>

namespace Brindle {

/// What a thread that works with a store holds as long as it runs, before all else that it holds.
///
/// A thread that waits for a silent server or a locked file is left behind when the program no longer waits for it. The
/// end of the program takes apart what such a thread uses, so from then on it stands still.
class StoreThreadRun {
public:
    StoreThreadRun();
    ~StoreThreadRun();
    StoreThreadRun(const StoreThreadRun&) = delete;
    StoreThreadRun& operator=(const StoreThreadRun&) = delete;

    /// To be called behind each wait for the store; does not return when the program is ending.
    static void StandStillAtTheEnd();

    /// Leaves a thread to itself. The end of the program waits for it half a second at most.
    static void Leave(std::thread thread);
};

} // namespace Brindle
