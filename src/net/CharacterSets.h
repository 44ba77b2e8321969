#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Brindle {

/// The text of bytes in a character set of one or more bytes a character, by its lower-case name in the WHATWG Encoding
/// standard ("windows-1250", "shift_jis"), as the system converts it. Nothing when the system does not know the set.
std::optional<QString> DecodeCharacterSet(const QByteArray& name, const QByteArray& bytes);

} // namespace Brindle
