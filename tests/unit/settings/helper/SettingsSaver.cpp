#include "Errors.h"
#include "SettingsStore.h"

#include <cstdio>

// settings_saver FILE: saves a short and a long record in turn, until it is killed.
int main(int argc, char** argv) {
    using namespace Brindle;
    if (argc != 2)
        return 2;
    const SettingsStore store(QString::fromLocal8Bit(argv[1]), {});
    Settings settings;
    try {
        for (;;) {
            settings.eRandomProxies.clear();
            store.SaveSettings(settings);
            settings.eRandomProxies = QStringList(20'000, QStringLiteral("10.0.0.1:8080:user:password"));
            store.SaveSettings(settings);
            std::puts("saved");
            std::fflush(stdout);
        }
    } catch (const Failure& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
