#include "workbench/Workbench.h"

#include "core/Errors.h"
#include "discovery/SavedPage.h"
#include "net/CustomProxy.h"
#include "net/HttpClient.h"
#include "recipes/RecipeFile.h"
#include "recipes/RecipeFolders.h"
#include "workbench/AnyDirectories.h"
#include "workbench/Product.h"
#include "workbench/ProgramFiles.h"

#include <QDir>

namespace Brindle {

using namespace Qt::StringLiterals;

Workbench::Workbench(const Parts& parts, SitesFile sites)
    : Sites(std::move(sites)),
      Fetcher(State, Options, Texts, parts.Loop, parts.Status),
      Emails(State, Options, Fetcher),
      Saver(State, Options, Leads, Texts, parts.Status, parts.Loop),
      Copies(More, Options, Leads),
      Job({State, Leads, Options, Texts, Catalogue, parts.Loop, parts.Status, parts.Notices, Fetcher, Emails, Saver}) {
    Saver.LeadSaved = [this](const QString& fileName, const Lead& lead) { Copies.Add(fileName, lead); };
}

namespace {

void Offer(SiteCatalogue& catalogue, const RecipeEntry& entry, bool readsDetails) {
    const Recipe& recipe = entry.What;
    QString label = recipe.Country.isEmpty() ? recipe.Name : recipe.Name + u", " + recipe.Country;
    const QString home = recipe.Home.startsWith(UnknownWebsite) ? QString() : recipe.Home;
    // Of two that look alike in the selector the second says its code.
    const QString alike = catalogue.GetCountryID(SiteEntry{.Base = home, .Label = label}.DisplayEntry());
    if (!alike.isEmpty() && alike != entry.Code)
        label += u", " + entry.Code;
    catalogue.Add({.Code = entry.Code, .Base = home, .Label = label}, DirectoryOfRecipe(entry, readsDetails));
}

} // namespace

void Workbench::LoadCatalogue() {
    Catalogue = Sites.Catalogue();
    const QString anyWebsite = AnyWebsiteShown.isEmpty() ? AnyWebsiteLabel.toString() : AnyWebsiteShown;
    Catalogue.Add({.Code = AnyWebsiteCode.toString(), .Label = anyWebsite}, AnyWebsite(ReadsDetails));
    RecipeProblems.clear();
    const QString ofProgram = ProgramRecipes();
    const QString ofUser = SettingsFolder.isEmpty() ? ofProgram : UserRecipes();
    for (const RecipeEntry& entry : LoadRecipes(ofProgram, ofUser, RecipeProblems))
        Offer(Catalogue, entry, ReadsDetails);
}

QString Workbench::AddRecipe(const QString& fileName) {
    RecipeEntry entry{
        .Code = RecipeCodeOf(fileName), .FileName = fileName, .OfUser = true, .What = LoadRecipe(fileName)};
    if (const QString problem = RecipeCodeProblem(entry.Code); !problem.isEmpty())
        throw Failure(QDir::toNativeSeparators(fileName) + u": " + problem);
    Offer(Catalogue, entry, ReadsDetails);
    return entry.Code;
}

QString Workbench::ProgramRecipes() const {
    return ProgramFiles::Recipes();
}

QString Workbench::UserRecipes() const {
    return SettingsFolder.isEmpty() ? QString() : QDir(SettingsFolder).filePath(u"recipes"_s);
}

void Workbench::Use(const LanguageFile& language) {
    if (language.IsEmpty())
        return;
    language.FillMessages(Texts, ProductEdition, ProductTitle());
    Leads.Captions = language.ColumnCaptions();
}

void Workbench::SetUp(EmbeddedBrowser& browser, EmbeddedBrowser* beside) {
    SetCustomProxy(browser, Options, Sites.BrowserUserAgent.isEmpty() ? BrowserUserAgent() : Sites.BrowserUserAgent);
    if (beside)
        beside->SetProxy(ProxyInForce(Options));
}

} // namespace Brindle
