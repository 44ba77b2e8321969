#include "browser/webengine/WebEngineStart.h"

#include "platform/Programs.h"

#include <QByteArray>
#include <QByteArrayList>

#include <cstdio>

#ifdef Q_OS_LINUX
#include <sys/statvfs.h>
#endif

namespace Brindle {

namespace {

#ifdef Q_OS_LINUX

// Containers often have a shared memory of 64 MB, which a large page fills.
bool SharedMemoryIsSmall() {
    struct statvfs space {};
    return statvfs("/dev/shm", &space) != 0 || quint64(space.f_bavail) * space.f_frsize < 256ULL * 1024 * 1024;
}

#else

bool SharedMemoryIsSmall() {
    return false;
}

#endif

} // namespace

void PrepareWebEngine() {
    const char* const sandboxVariable = "QTWEBENGINE_DISABLE_SANDBOX";
    const char* const flagsVariable = "QTWEBENGINE_CHROMIUM_FLAGS";
    QByteArrayList flags = qgetenv(flagsVariable).split(' ');
    flags.removeAll(QByteArray());

    if (!qEnvironmentVariableIsSet(sandboxVariable) && !flags.contains("--no-sandbox"))
        if (const QString reason = WhyNoSandbox(); !reason.isEmpty()) {
            std::fprintf(stderr, "The browser engine runs without its sandbox, because %s.\n",
                         reason.toLocal8Bit().constData());
            flags += "--no-sandbox";
        }
    if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES"))
        qputenv("QT_LOGGING_RULES", "qt.webenginecontext.*=false");
    // No traffic but what pages ask for.
    flags += {"--disable-background-networking",
              "--disable-component-update",
              "--disable-domain-reliability",
              "--disable-sync",
              "--no-pings",
              "--dns-prefetch-disable"};
    if (SharedMemoryIsSmall())
        flags += "--disable-dev-shm-usage";
    qputenv(flagsVariable, flags.join(' '));
}

} // namespace Brindle
