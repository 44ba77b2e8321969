#include "platform/TickCount.h"

#include <QElapsedTimer>

namespace Brindle {

quint32 SystemTickCount() {
    static const QElapsedTimer clock = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    return static_cast<quint32>(clock.elapsed());
}

} // namespace Brindle
