#pragma once

#include "core/Errors.h"

#include <QString>
#include <QStringList>

namespace Brindle {

/// The command line of the program was wrong; the message says how.
class OptionError : public Failure {
    using Failure::Failure;
};

/// What the command line of the window asks for.
struct ProgramOptions {
    enum class Engine { Best, Static, Web };

    bool OnDemo = false;
    QString SitesFileName;    ///< empty: beside the executable
    QString SettingsFileName; ///< empty: the user's
    Engine Browser = Engine::Best;
    double Pace = 1.0; ///< every wait times this
};

/// Reads the arguments behind the program's name; `--help`, `--version` and `--diagnose` are left to the caller. Throws
/// `OptionError`.
ProgramOptions ParseProgramOptions(const QStringList& arguments);

/// The text of `--help`.
QString ProgramHelp();

} // namespace Brindle
