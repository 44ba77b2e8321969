#pragma once

#include "core/EmbeddedBrowser.h"
#include "core/Platform.h"

#include <QString>

namespace Brindle {

/// The value that makes the system's browser engine of a version work as that version in this program. An unknown
/// version is taken for 11.
quint32 EmulationValue(QStringView engineVersion);

/// Sets the system's browser engine up for the program: the emulation value under the executable's name, mixed secure
/// and insecure content allowed without asking. An engine of version 8 is told its own user agent.
void SetIERegistryKey(const QString& engineVersion, const QString& executableName, Platform& system,
                      EmbeddedBrowser& browser);

} // namespace Brindle
