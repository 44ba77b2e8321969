#pragma once

#include "cli/CommandLine.h"
#include "cli/Console.h"
#include "core/EmbeddedBrowser.h"
#include "core/MessageLoop.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace Brindle {

/// Makes the browser that runs an engine of its own; `profileFolder` is where it keeps what it remembers.
using WebBrowserFactory =
    std::function<std::unique_ptr<EmbeddedBrowser>(MessageLoop& loop, const QString& profileFolder)>;

/// A command on the demo directories.
using DemoCommand = std::function<int(const CommandLine& line, Console& console, const WebBrowserFactory& webBrowser)>;

/// What only some of the programs have in them, as it takes long to load.
struct ProgramParts {
    WebBrowserFactory WebBrowser;
    DemoCommand Demo;
};

/// The whole command line: reads the arguments behind the program's name, runs the command, returns the exit status.
/// A command for which a part is missing is handed over to the program that has it.
int RunCli(const QStringList& arguments, const ProgramParts& parts = {});

} // namespace Brindle
