#include "platform/TickCount.h"

#include <windows.h>

namespace Brindle {

quint32 SystemTickCount() {
    return GetTickCount();
}

} // namespace Brindle
