#pragma once

#include <QString>

namespace Brindle {

/// The title that the program has in its captions and texts.
QString ProductTitle();
/// The version, numbers joined by dots.
QString ProductVersion();
/// The edition number: 0 here.
constexpr int ProductEdition = 0;

} // namespace Brindle
