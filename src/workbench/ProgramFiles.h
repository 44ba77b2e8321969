#pragma once

#include "core/Platform.h"

#include <QString>

namespace Brindle {

/// Where the files of the program lie that a user can name on the command line. An empty name stands for the default.
struct ProgramFiles {
    /// `settings.dat` in the settings folder unless another file is named.
    static QString Settings(Platform& system, const QString& named = {});
    /// `options.toml` beside the settings file.
    static QString Options(Platform& system, const QString& namedSettings = {});
    /// `sites.ini` beside the executable unless another file is named.
    static QString Sites(const QString& named = {});
};

} // namespace Brindle
