#include "core/Errors.h"
#include "settings/SettingsStore.h"

#include <cstdio>

using namespace Qt::StringLiterals;

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
            settings.eRandomProxies = QStringList(20'000, u"10.0.0.1:8080:user:password"_s);
            store.SaveSettings(settings);
            std::puts("saved");
            std::fflush(stdout);
        }
    } catch (const Failure& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
