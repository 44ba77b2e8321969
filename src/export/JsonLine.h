#pragma once

#include "core/Lead.h"

#include <QByteArray>

namespace Brindle {

/// A lead as one JSON object (RFC 8259) in UTF-8, ended by a line feed: the fourteen English captions as keys in column
/// order, every key present. A lone surrogate stands as an escape.
QByteArray JsonLine(const Lead& lead);
/// The same with further keys behind the fourteen.
QByteArray JsonLine(const Lead& lead, const QStringList& captions, const QStringList& texts);

} // namespace Brindle
