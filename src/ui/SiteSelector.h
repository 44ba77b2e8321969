#pragma once

#include "core/EmbeddedBrowser.h"
#include "core/HarvestDriver.h"
#include "core/Platform.h"

namespace Brindle {

/// What happens when a directory is chosen.
class SiteSelector {
public:
    SiteSelector(Harvest& harvest, HarvestDriver& driver, EmbeddedBrowser& browser, Platform& system);

    /// Opens the home page of a display entry and makes its site the current one.
    void Open(const QString& entry);
    /// The user has chosen another entry: one without a home page keeps the page that is shown. A running harvest is
    /// stopped, the browser cleared and its cache emptied, then the entry is opened. Takes a second, in which messages
    /// are handled; a choice that comes meanwhile replaces this one.
    void Change(const QString& entry);
    /// Opens the home page of the current entry; one without keeps the page that is shown.
    void GoHome();

private:
    bool HasHomePage(const QString& entry) const;

    Harvest& harvest_;
    HarvestDriver& driver_;
    EmbeddedBrowser& browser_;
    Platform& system_;
    quint32 changes_ = 0;
};

} // namespace Brindle
