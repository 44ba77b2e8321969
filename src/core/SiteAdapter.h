#pragma once

#include "core/EmbeddedBrowser.h"
#include "core/Harvest.h"

#include <QString>

namespace Brindle {

/// What a site that turns its own pages may use.
struct PageTurn {
    Harvest& Job;
    EmbeddedBrowser& Browser;
    MessageLoop::Timer& tmrParse;
};

/// The reader of one directory site.
struct SiteAdapter {
    QStringView Code;
    /// Reads a result page into leads.
    void (*GetDataResults)(Harvest& harvest, const QString& page);
    /// Loads the next result page and re-arms the parse timer; true when a next page is being loaded. Null for sites
    /// whose next-page link the driver finds by the site's markers.
    bool (*TurnPage)(PageTurn& turn, const QString& page) = nullptr;
};

} // namespace Brindle
