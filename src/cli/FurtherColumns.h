#pragma once

#include "cli/CommandLine.h"
#include "core/MoreOptions.h"
#include "export/ExtraColumns.h"

namespace Brindle {

/// The further columns that the command line asks for; `--check-mx` alone asks for the checked e-mails. Throws
/// `UsageError` for a name that is none.
ExtraColumns FurtherColumns(const CommandLine& line, const MoreOptions& options);

} // namespace Brindle
