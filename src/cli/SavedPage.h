#pragma once

#include "page/PageTree.h"

#include <QString>

namespace Brindle {

/// The text of a saved page, "-" being standard input. Throws `Failure` with the file's name and the reason.
QString TextOfFile(const QString& fileName);

/// A saved page, parsed. Throws `Failure` like `TextOfFile`, and when the page is beyond what is parsed.
PageTree TreeOfFile(const QString& fileName);

} // namespace Brindle
