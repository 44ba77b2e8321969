#pragma once

#include "core/MarkupForm.h"

#include <QString>

namespace Brindle {

/// The legacy form of a page's serialisation: element names in capitals, plain values of HTML 4.01's own attributes
/// bare, its boolean attributes by their name alone, attribute names in the mixed case of old engines. Text, comments,
/// scripts and styles stay. A text that is in this form already comes back unchanged. Linear in the length.
QString ToLegacyForm(const QString& html);

/// A serialisation of today's engines in the form that is asked for.
QString InMarkupForm(const QString& html, MarkupForm form);

} // namespace Brindle
