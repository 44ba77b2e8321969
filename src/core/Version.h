#pragma once

#include <QString>

namespace Brindle {

/// The program's version, as CMakeLists.txt has it. It is compiled into one file, so that another version builds no
/// more than that.
QString ProgramVersion();

} // namespace Brindle
