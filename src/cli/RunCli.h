#pragma once

#include "core/EmbeddedBrowser.h"
#include "core/MessageLoop.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace Brindle {

/// Makes the browser that runs an engine of its own; `profileFolder` is where it keeps what it remembers.
using WebBrowserFactory =
    std::function<std::unique_ptr<EmbeddedBrowser>(MessageLoop& loop, const QString& profileFolder)>;

/// The whole command line: reads the arguments behind the program's name, runs the command, returns the exit status.
/// Without a factory, a harvest with the engine is handed over to the program that has one.
int RunCli(const QStringList& arguments, const WebBrowserFactory& webBrowser = {});

} // namespace Brindle
