#pragma once

#include <functional>
#include <memory>

namespace Brindle {

/// Catches Ctrl-C, and where there is one the signal to end, for its lifetime and calls back from the event loop, so
/// the command can end in order. A second one ends the program at once. Where there are several, the youngest is called
/// first, and each older one when the younger ones are gone.
class Interrupt {
public:
    explicit Interrupt(std::function<void()> onInterrupt);
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    bool Happened() const;

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

/// From now on the end of standard input counts as one Ctrl-C: for a process that was started by another one with a
/// pipe to it, and is not to outlive it, however that one ends.
void InterruptWhenInputEnds();

} // namespace Brindle
