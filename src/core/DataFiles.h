#pragma once

#include <QString>

namespace Brindle {

/// A file or folder that comes with the program, by its name ("sites.ini", "languages"): beside the executable, as in a
/// build tree and on Windows, or in `share/brindle` of an installation. The first that is there; the one beside the
/// executable when none is.
QString DataFile(const QString& name);
/// The same for an executable in the folder `programFolder`: `bin`, or a folder of its own below `libexec`.
QString DataFileFor(const QString& programFolder, const QString& name);

} // namespace Brindle
