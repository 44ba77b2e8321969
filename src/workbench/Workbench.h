#pragma once

#include "core/EmbeddedBrowser.h"
#include "core/Harvest.h"
#include "core/MoreOptions.h"
#include "core/SitesFile.h"
#include "export/AutomaticSaver.h"
#include "export/EndCopies.h"
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

    /// Offers the directories of the deployment file that are complete, behind them any website, then the recipes. To
    /// be called again when there is a new recipe. What is wrong with one stands in `RecipeProblems`.
    void LoadCatalogue();
    /// Offers the directory that a recipe's file describes, too, and returns its site code. Throws `Failure`.
    QString AddRecipe(const QString& fileName);
    /// The folder of the recipes that come with the program.
    QString ProgramRecipes() const;
    /// The folder of the user's recipes, which come before the program's of the same name; empty where there is none.
    QString UserRecipes() const;
    /// Takes over the message texts and the captions of the columns; an empty file leaves them as they are.
    void Use(const LanguageFile& language);
    /// Makes a browser go the way that the settings want, under the agent of the deployment file or the built-in one.
    /// Changes the proxy in the settings as `SetCustomProxy` does.
    /// `beside`, which may be null, goes the same way under its own agent.
    void SetUp(EmbeddedBrowser& browser, EmbeddedBrowser* beside = nullptr);

    const SitesFile Sites;
    QString SettingsFolder;    ///< where the user's recipes are looked for; empty: nowhere
    QString AnyWebsiteShown;   ///< what the selector shows for any website; empty: in English
    bool ReadsDetails = false; ///< any website and recipes: each record's own page is read, too
    SiteCatalogue Catalogue;   ///< empty until it is loaded
    Settings Options;
    MoreOptions More;
    QStringList RecipeProblems; ///< one line each
    MessageTexts Texts;
    LeadList Leads;
    HarvestState State;
    PageFetcher Fetcher;
    EmailHarvester Emails;
    AutomaticSaver Saver;
    EndCopies Copies; ///< of the automatic file; a front end ends them with the harvest
    Harvest Job;
};

} // namespace Brindle
