#pragma once

#include <QString>

#include <gumbo.h>

namespace Brindle {

/// Whether an element is not shown of itself: scripts and their like, what its page marks as hidden.
bool IsHidden(const GumboNode* node);

/// An element's text as it is shown: white space collapsed, a line for each block or line break, tabs between cells,
/// nothing of what is hidden, no blanks at the ends (HTML, section 3.2.7, innerText). Style sheets are not read.
QString InnerText(const GumboNode* node);

/// All the text in an element as it stands, which is the inner text of an element that is not shown.
QString TextContent(const GumboNode* node);

} // namespace Brindle
