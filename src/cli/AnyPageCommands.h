#pragma once

#include "cli/CommandLine.h"
#include "cli/Console.h"
#include "cli/SavedPage.h"

namespace Brindle {

/// `parse --site AUTO` and `parse --recipe FILE`: the leads of saved pages of any directory, or of a recipe's.
int RunParseAnyPage(const CommandLine& line, Console& console);
/// `next`: the address of the page on which the list of a saved page goes on.
int RunNext(const CommandLine& line, Console& console);
/// `explain`: what was found on a saved page and why, as JSON.
int RunExplain(const CommandLine& line, Console& console);

/// The address of `--url`, which must be one of the web; throws `UsageError`.
QString PageUrlOf(const CommandLine& line);

/// The site code that stands for a directory that nobody described.
inline constexpr QStringView anyPageSite = u"AUTO";

} // namespace Brindle
