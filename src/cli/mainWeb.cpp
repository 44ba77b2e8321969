#include "browser/webengine/WebEngineBrowser.h"
#include "browser/webengine/WebEngineStart.h"
#include "cli/RunCli.h"
#ifdef BRINDLE_HAS_DEMO
#include "cli/DemoCommands.h"
#endif

#include <QApplication>

// brindle-cli with the Chromium engine in it. No display is needed: pages are laid out off the screen.
int main(int argc, char* argv[]) {
    Brindle::PrepareWebEngine();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    Brindle::ProgramParts parts;
    parts.WebBrowser = [](Brindle::MessageLoop& loop, const QString& profileFolder) {
        return std::make_unique<Brindle::WebEngineBrowser>(loop, profileFolder);
    };
#ifdef BRINDLE_HAS_DEMO
    parts.Demo = &Brindle::RunOnDemo;
#endif
    return Brindle::RunCli(QCoreApplication::arguments().mid(1), parts);
}
