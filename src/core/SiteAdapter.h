#pragma once

#include "core/EmbeddedBrowser.h"
#include "core/Harvest.h"

#include <QString>

namespace Brindle {

/// What a site that turns its own pages may use.
struct PageTurn {
    Harvest& Job;
    EmbeddedBrowser& Browser;
};

/// What became of turning a page.
struct TurnedPage {
    bool Clicked = false;     ///< a link was followed
    bool GoesOn = false;      ///< the harvest looks for another page; otherwise this was the last one
    bool OpenToStart = false; ///< Start is accepted while the next page is loading
};

/// The reader of one directory site.
struct SiteAdapter {
    QStringView Code;
    /// Reads a result page into leads. Throws `PageError` when it cannot go on with the page.
    void (*GetDataResults)(Harvest& harvest, const QString& page);
    /// Loads the next result page. Null for sites whose next-page link the driver finds by the site's markers.
    TurnedPage (*TurnPage)(PageTurn& turn, const QString& page) = nullptr;
};

} // namespace Brindle
