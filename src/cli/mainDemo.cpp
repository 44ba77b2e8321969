#include "cli/DemoCommands.h"

#include <QCoreApplication>

// brindle-cli with the demo directories in it.
int main(int argc, char* argv[]) {
    const QCoreApplication app(argc, argv);
    return Brindle::RunCli(QCoreApplication::arguments().mid(1), {.WebBrowser = {}, .Demo = &Brindle::RunOnDemo});
}
