#pragma once

#include <QString>

#include <gumbo.h>

namespace Brindle {

/// An element, its own tags included, by HTML's serialisation rules (section 13.3, scripts being on).
QString OuterHtml(const GumboNode* node);

} // namespace Brindle
