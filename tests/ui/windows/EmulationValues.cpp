// Sets the system's browser engine up once for each engine version that is named, under an executable name of its own
// ("engine-8.0.exe"), so that a look at the registry shows what came of it.
#include "browser/StaticBrowser.h"
#include "platform/CreatePlatform.h"
#include "ui/BrowserEmulation.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const auto system = Brindle::CreatePlatform();
    Brindle::StaticBrowser browser;
    for (const QString& version : QCoreApplication::arguments().mid(1))
        Brindle::SetIERegistryKey(version, u"engine-%1.exe"_s.arg(version), *system, browser);
}
