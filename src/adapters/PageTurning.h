#pragma once

#include "core/Harvest.h"
#include "core/SiteAdapter.h"

#include <functional>

namespace Brindle {

/// Clicks the first link of the browser's document whose visible text is wanted and gives the page three seconds, while
/// messages are handled. True when there is such a link and no stop was requested before it was found.
bool ClickFirstLink(PageTurn& turn, const std::function<bool(const QString& text)>& wanted);

} // namespace Brindle
