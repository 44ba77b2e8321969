#pragma once

#include "cli/CommandLine.h"
#include "cli/Console.h"
#include "cli/SavedPage.h"

namespace Brindle {

/// Whether `parse` reads whole documents: any website, a recipe's file, a recipe by its code.
bool ReadsDocuments(const CommandLine& line);
/// `parse --site AUTO` and `parse --recipe FILE`: the leads of saved pages of any directory, or of a recipe's; with
/// `--details` what their own pages say, too.
int RunParseAnyPage(const CommandLine& line, Console& console);
/// `next`: the address of the page on which the list of a saved page goes on.
int RunNext(const CommandLine& line, Console& console);
/// `explain`: what was found on a saved page and why, as JSON.
int RunExplain(const CommandLine& line, Console& console);

/// The address of `--url`, which must be one of the web; throws `UsageError`.
QString PageUrlOf(const CommandLine& line);

} // namespace Brindle
