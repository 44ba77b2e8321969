#pragma once

#include "page/PageBounds.h"
#include "page/PageTree.h"

#include <QString>

namespace Brindle {

/// Parses a whole page, scripts being on, into an empty tree. Throws `Failure` with one
/// line when the page is beyond the bounds.
void ParseHtml(QString html, const PageBounds& bounds, PageTree& tree);

} // namespace Brindle
