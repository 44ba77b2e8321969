#pragma once

#include "core/EmbeddedBrowser.h"
#include "core/Harvest.h"
#include "core/MoreOptions.h"
#include "core/SitesFile.h"
#include "export/AutomaticSaver.h"
#include "i18n/LanguageFile.h"
#include "net/EmailHarvester.h"
#include "net/PageFetcher.h"

namespace Brindle {

/// Everything that takes part in harvests, wired together: what the window and the command line have in common. A front
/// end brings what differs, and drives it with a browser of its own.
class Workbench {
public:
    /// What a front end brings; all of it must outlive the workbench.
    struct Parts {
        MessageLoop& Loop;
        StatusView& Status;
        Dialogs& Notices;
    };
    Workbench(const Parts& parts, SitesFile sites);
    Workbench(const Workbench&) = delete;
    Workbench& operator=(const Workbench&) = delete;

    /// Offers the directories of the deployment file, all that are complete.
    void LoadCatalogue() { Catalogue = Sites.Catalogue(); }
    /// Takes over the message texts and the captions of the columns; an empty file leaves them as they are.
    void Use(const LanguageFile& language);
    /// Makes a browser go the way that the settings want, under the agent of the deployment file or the built-in one.
    /// Changes the proxy in the settings as `SetCustomProxy` does.
    void SetUp(EmbeddedBrowser& browser);

    const SitesFile Sites;
    SiteCatalogue Catalogue; ///< empty until it is loaded
    Settings Options;
    MoreOptions More;
    MessageTexts Texts;
    LeadList Leads;
    HarvestState State;
    PageFetcher Fetcher;
    EmailHarvester Emails;
    AutomaticSaver Saver;
    Harvest Job;
};

} // namespace Brindle
