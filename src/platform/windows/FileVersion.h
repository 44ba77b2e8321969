#pragma once

#include <QString>

namespace Brindle {

/// The version that a program file carries as its four numbers joined by "."; "0" when it has none or cannot be read.
QString FileVersion(const QString& fileName);

} // namespace Brindle
