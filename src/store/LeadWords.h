#pragma once

#include "core/Lead.h"

#include <QString>
#include <QStringList>

namespace Brindle {

/// The words of a text as they are looked for: accents and case folded, letters and digits, each at most 64 characters.
QStringList WordsOf(const QString& text);

/// The different words of a lead's fields, joined by blanks. The map link repeats the address and is left out; the
/// digits of phone and fax stand together as well, so that a number is found however it is written.
QString LeadWords(const Lead& lead);

} // namespace Brindle
