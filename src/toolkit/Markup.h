#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

namespace Brindle {

/// A field value scrubbed of the markup that directories leave in it: trimmed, the replacements of a fixed table made
/// in their order, trimmed again.
QString CleanMarkup(QStringView text);

/// The text without its tags, trimmed. A "<" that no ">" follows, and whatever stands behind it, is kept.
QString StripTags(QStringView text);

/// The parts of the text between separators; an empty text has one empty part, a trailing separator makes an empty
/// last one. Parts are not trimmed.
QStringList SplitText(QStringView text, QStringView separator);

/// The text without the nine characters that file names may not hold: \ / : ? * " < > |
QString SanitizeFileName(QStringView text);

} // namespace Brindle
