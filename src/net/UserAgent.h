#pragma once

#include "core/Version.h"

#include <QString>

namespace Brindle {

/// The name under which the program asks for pages and for robots.txt (RFC 9309, section 2.2.1).
inline constexpr auto productToken = u"Brindle";

/// The program's own user agent: what it sends where nothing else is asked for.
inline QString OwnUserAgent() {
    return QStringLiteral("Mozilla/5.0 (compatible; Brindle/") + ProgramVersion() + u')';
}

} // namespace Brindle
