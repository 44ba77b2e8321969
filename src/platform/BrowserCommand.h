#pragma once

#include <QString>

namespace Brindle {

/// The program of a registered browser command: the lower-cased command up to its first ".exe", with ".exe" appended
/// and every double quote removed. A command without ".exe" gives ".exe".
QString BrowserProgram(const QString& command);

/// The program file of the system's browser engine from the command registered for it: from its second character, after
/// the opening quote, to the end of the first "iexplore.exe"; empty when the command does not hold that.
QString EngineExecutable(const QString& command);

} // namespace Brindle
