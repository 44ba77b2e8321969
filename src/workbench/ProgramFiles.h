#pragma once

#include "core/Platform.h"
#include "core/SitesFile.h"

#include <QString>

namespace Brindle {

/// Where the files of the program lie that a user can name on the command line. An empty name stands for the default.
struct ProgramFiles {
    /// `settings.dat` in the settings folder unless another file is named.
    static QString Settings(Platform& system, const QString& named = {});
    /// `options.toml` beside the settings file.
    static QString Options(Platform& system, const QString& namedSettings = {});
    /// The `sites.ini` that came with the program unless another file is named.
    static QString Sites(const QString& named = {});
    /// `sites.ini` in the settings folder, with what the user changes in it.
    static QString OwnSites(Platform& system);
    /// The deployment file in force: the named one alone, or the program's with the user's own on top. Throws `Failure`
    /// when the named one or the program's cannot be read.
    static SitesFile LoadSites(Platform& system, const QString& named, std::span<const SiteAdapter> directories);
    /// The folder of the recipes that came with the program.
    static QString Recipes();
};

} // namespace Brindle
