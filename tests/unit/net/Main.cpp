#include <QCoreApplication>

#include <gtest/gtest.h>

#ifdef Q_OS_LINUX
#include <cstring>
#include <dlfcn.h>
#include <netdb.h>
#include <thread>

// The resolver of this program: one name stands for a name server that does not answer, another one for a stranger's
// name that leads to this machine.
extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints, addrinfo** result) {
    static const auto real = reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    if (name && std::strcmp(name, "stalled.test") == 0) {
        std::this_thread::sleep_for(std::chrono::seconds(2));
        return EAI_AGAIN;
    }
    if (name && std::strcmp(name, "inside.test") == 0)
        name = "127.0.0.1";
    return real(name, service, hints, result);
}
#endif

// Transfers need Qt's event loop.
int main(int argc, char* argv[]) {
    const QCoreApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
