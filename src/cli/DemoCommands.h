#pragma once

#include "cli/RunCli.h"

namespace Brindle {

/// `demo`, and `harvest --demo`: serves the demo directories, and harvests from them. What the demo needs takes long to
/// load, so only some programs have it in them.
int RunOnDemo(const CommandLine& line, Console& console, const WebBrowserFactory& webBrowser);

} // namespace Brindle
