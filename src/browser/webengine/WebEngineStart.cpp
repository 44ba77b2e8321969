#include "browser/webengine/WebEngineStart.h"

#include <QByteArray>
#include <QByteArrayList>

#include <cstdio>

#ifdef Q_OS_LINUX
#include <sched.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace Brindle {

namespace {

#ifdef Q_OS_LINUX

bool UserNamespacesWork() {
    const pid_t child = fork();
    if (child < 0)
        return false;
    if (child == 0)
        _exit(unshare(CLONE_NEWUSER) == 0 ? 0 : 1);
    int status = 1;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

const char* WhyNoSandbox() {
    if (geteuid() == 0)
        return "it runs as root";
    return UserNamespacesWork() ? nullptr : "the system allows no user namespaces";
}

// Containers often have a shared memory of 64 MB, which a large page fills.
bool SharedMemoryIsSmall() {
    struct statvfs space {};
    return statvfs("/dev/shm", &space) != 0 || quint64(space.f_bavail) * space.f_frsize < 256ULL * 1024 * 1024;
}

#else

const char* WhyNoSandbox() {
    return nullptr;
}
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
        if (const char* const reason = WhyNoSandbox()) {
            std::fprintf(stderr, "The browser engine runs without its sandbox, because %s.\n", reason);
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
