#pragma once

#include <QtGlobal>

namespace Brindle {

/// The system's tick count, 32-bit milliseconds: since Windows was started there, since the first call elsewhere.
quint32 SystemTickCount();

} // namespace Brindle
