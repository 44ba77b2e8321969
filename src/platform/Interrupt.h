#pragma once

#include <functional>
#include <memory>

namespace Brindle {

/// Catches Ctrl-C, and where there is one the signal to end, for its lifetime and calls back from the event loop, so
/// the command can end in order. A second one ends the program at once.
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

} // namespace Brindle
