#pragma once

#include "core/MessageLoop.h"

namespace Brindle {

/// Waits `ms` milliseconds (times the loop's pace) while messages are handled. It handles them at least once, also for
/// 0 or less. The start of the wait is read as a signed count, so once the tick counter has passed 2^31 every wait ends
/// after one round. Returns at once when the program is ending.
void Delay(MessageLoop& loop, qint32 ms);

/// The same as `Delay`, but no message is handled meanwhile.
void BlockingDelay(MessageLoop& loop, qint32 ms);

} // namespace Brindle
