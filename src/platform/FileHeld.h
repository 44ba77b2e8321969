#pragma once

#include <QString>

namespace Brindle {

/// Whether another program keeps a file from being written to by having it open (a sharing violation), and nothing
/// else. Systems that know no such thing never say so.
bool HeldByAnotherProgram(const QString& fileName);

} // namespace Brindle
