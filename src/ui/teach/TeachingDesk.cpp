#include "ui/teach/TeachingDesk.h"

#include "ui/teach/TfrmDirectories.h"
#include "workbench/AnyDirectories.h"

namespace Brindle {

using namespace Qt::StringLiterals;

TeachingDesk::TeachingDesk(EmbeddedBrowser& browser, QWidget* view, MainForm& form, Workbench& bench, Dialogs& notices,
                           std::function<bool()> busy)
    : form_(form),
      bench_(bench),
      notices_(notices),
      teaching_(browser, view, *form.Teach, [&bench] { return bench.UserRecipes(); }),
      watch_(
          browser, *form.AnyBar, teaching_, [this] { return Chosen(); }, std::move(busy)) {
    teaching_.FetchPage = [this, &browser](const QString& address, QString& html) {
        HarvestState& state = bench_.State;
        state.CurrWay = Way::Modern;
        state.CurrPage = {browser.LocationAddress(), browser.PeerAddress()};
        state.ShouldStop = false;
        return bench_.Fetcher.DirectDownloadURL(address, html, false);
    };
    teaching_.CancelFetch = [this] { bench_.Fetcher.Disconnect(); };
    connect(&teaching_, &Teaching::Begun, this, [this] { ShowTeaching(true); });
    connect(&teaching_, &Teaching::Left, this, [this] { ShowTeaching(false); });
    connect(&teaching_, &Teaching::Saved, this, &TeachingDesk::DirectoriesChanged);
    connect(&watch_, &AnyPageWatch::HarvestWanted, this, &TeachingDesk::HarvestWanted);
}

void TeachingDesk::ApplyTexts(const WindowTexts& texts, const QStringList& captions) {
    texts_ = texts;
    results_ = form_.panResultsHeader->text();
    ShowHeading();
    teaching_.ApplyTexts(texts, captions);
    watch_.ApplyTexts(texts, captions);
}

ChosenSite TeachingDesk::Chosen() const {
    ChosenSite site;
    const QString& code = bench_.State.CurrID;
    site.AnyWebsite = code == AnyWebsiteCode;
    site.Label = bench_.State.SelectedEntry;
    site.Known = bench_.Catalogue.Adapter(code);
    QStringList problems;
    const std::vector<RecipeEntry> recipes = LoadRecipes(bench_.ProgramRecipes(), bench_.UserRecipes(), problems);
    if (const RecipeEntry* const entry = FindRecipe(recipes, code))
        site.Taught = *entry;
    else
        for (const QString& problem : problems)
            if (problem.contains(u'/' + code + u".toml:") || problem.contains(u'\\' + code + u".toml:"))
                site.Broken = problem;
    return site;
}

// What the table below the page shows.
void TeachingDesk::ShowHeading() {
    form_.panResultsHeader->setText(teaching_.Active() ? texts_.Text(WindowText::TeachTableName) : results_);
}

void TeachingDesk::ShowTeaching(bool teaching) {
    if (!teaching)
        form_.btnStart->setFocus(); // else the page gets it, and lights a link
    form_.Teach->setVisible(teaching);
    form_.Teach->Table()->setVisible(teaching);
    form_.lvwItems->setVisible(!teaching);
    ShowHeading();
    // The commands are for the results, which are not shown meanwhile; the page and the panel need the room.
    for (QPushButton* const button : form_.Results->findChildren<QPushButton*>(Qt::FindDirectChildrenOnly))
        button->setVisible(!teaching);
    if (teaching) {
        sizes_ = form_.Splitter->sizes();
        const int height = form_.Splitter->height();
        form_.Splitter->setSizes({height * 7 / 10, height * 3 / 10});
    } else {
        form_.Splitter->setSizes(sizes_);
    }
    // A key of two meanings would have none.
    form_.Bar->imgStop->setShortcut(teaching ? QKeySequence() : QKeySequence(Qt::Key_Escape));
    if (teaching)
        form_.Teach->setFocus();
}

void TeachingDesk::HarvestEnded() {
    watch_.HarvestEnded({bench_.Job.Counts.Records, bench_.Job.Counts.Filled});
}

void TeachingDesk::ShowDirectories(QWidget* window) {
    QStringList builtIn;
    for (qsizetype i = 0; i < bench_.Catalogue.WebsiteKeys().size(); ++i)
        if (const auto site = bench_.Catalogue.Adapter(bench_.Catalogue.WebsiteKeys()[i]);
            site && !site->Layouts.empty())
            builtIn.append(bench_.Catalogue.WebsiteURLS()[i]);
    TfrmDirectories dialog({builtIn, bench_.ProgramRecipes(), bench_.UserRecipes(), notices_, texts_}, window);
    dialog.Select(bench_.State.CurrID);
    dialog.exec();
    if (dialog.Changed())
        Q_EMIT DirectoriesChanged({});
}

} // namespace Brindle
