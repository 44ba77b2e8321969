#pragma once

#include <QString>

namespace Brindle {

/// The web address that a field of a lead stands for: one of http or https as it is, a bare host name, with or without
/// a path, as one of http. Empty for everything else: the desktop would take it for a file or start a program with it.
QString OpenableAddress(const QString& text);

} // namespace Brindle
