#include "core/Delay.h"

namespace Brindle {

namespace {

qint64 Paced(const MessageLoop& loop, qint32 ms) {
    return qRound64(ms * loop.Pace());
}

} // namespace

void Delay(MessageLoop& loop, qint32 ms) {
    const qint64 wanted = Paced(loop, ms);
    const auto start = static_cast<qint32>(loop.TickCount());
    for (;;) {
        loop.ProcessMessages();
        const qint64 elapsed = static_cast<qint64>(loop.TickCount()) - static_cast<qint64>(start);
        if (elapsed >= wanted || loop.Quitting())
            return;
        loop.WaitForMessage(wanted - elapsed);
    }
}

void BlockingDelay(MessageLoop& loop, qint32 ms) {
    const qint64 wanted = Paced(loop, ms);
    if (wanted > 0 && !loop.Quitting())
        loop.BlockFor(wanted);
}

} // namespace Brindle
