#pragma once

#include <QString>

namespace Brindle {

/// The program of a registered browser command: the lower-cased command up to its first ".exe", with ".exe" appended
/// and every double quote removed. A command without ".exe" gives ".exe".
QString BrowserProgram(const QString& command);

} // namespace Brindle
