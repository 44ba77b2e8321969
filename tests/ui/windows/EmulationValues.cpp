// Sets the system's browser engine up once for each engine version that is named, under an executable name of its own
// ("engine-8.0.exe"), so that a look at the registry shows what came of it.
#include "BrowserEmulation.h"
#include "CreatePlatform.h"
#include "StaticBrowser.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const auto system = Brindle::CreatePlatform();
    Brindle::StaticBrowser browser;
    for (const QString& version : QCoreApplication::arguments().mid(1))
        Brindle::SetIERegistryKey(version, QStringLiteral("engine-%1.exe").arg(version), *system, browser);
}
