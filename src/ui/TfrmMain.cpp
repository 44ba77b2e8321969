#include "ui/TfrmMain.h"

#include "core/Delay.h"
#include "core/Errors.h"
#include "core/LeadListCommands.h"
#include "platform/FileHeld.h"
#include "ui/BrowserEmulation.h"
#include "ui/ExportBox.h"
#include "ui/ExportDialog.h"
#include "ui/Icons.h"
#include "ui/TfrmSearches.h"
#include "ui/TfrmSettings.h"
#include "workbench/AnyDirectories.h"
#include "workbench/Product.h"
#include "workbench/ProgramFiles.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QShortcut>

#include <algorithm>
#include <numeric>
#include <utility>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int startUpDelay = 100;
constexpr int updatePatience = 500; // before the directories are offered without its answer
constexpr int indicatorInterval = 500;
constexpr qsizetype namedProblems = 3; // of the deployment file
const QString blank = u"about:blank"_s;

ShownBrowser NewsBrowser(const MainWindowParts& parts) {
    if (parts.Sites.PublisherNews.isEmpty())
        return {nullptr, new QWidget}; // an engine of its own for an empty page would only cost memory
    return parts.CreateBrowser(parts.Loop, QString());
}

} // namespace

TfrmMain::TfrmMain(const MainWindowParts& parts)
    : loop_(parts.Loop),
      system_(parts.System),
      browser_(parts.CreateBrowser(parts.Loop, QDir(parts.SettingsFolder).filePath(u"browser"_s))),
      news_(NewsBrowser(parts)),
      form_(*this, browser_.View, news_.View),
      messageBoxes_(this, loop_),
      notices_(parts.Notices ? *parts.Notices : messageBoxes_),
      settingsStore_(parts.SettingsFileName, system_.GetDocumentsFolder()),
      optionsFile_(ProgramFiles::Options(system_, parts.SettingsFileName)),
      place_(QDir(parts.SettingsFolder).filePath(u"window.ini"_s)),
      bench_({loop_, *form_.Status, notices_}, parts.Sites),
      driver_(bench_.Job, *browser_.Browser, this),
      selector_(bench_.Job, driver_, *browser_.Browser, system_),
      updatePages_(updateState_, bench_.Options, bench_.Texts, loop_, *form_.Status),
      updates_({updatePages_, bench_.Texts, notices_, *form_.Status, system_, loop_}, bench_.Sites.PublisherUpdates,
               ProductVersion()),
      links_(system_, notices_, windowTexts_),
      browserNotices_(*browser_.Browser, *form_.Notice, windowTexts_),
      indicator_(bench_.Job, *form_.Status, windowTexts_),
      desk_(bench_, parts.SettingsFolder, [this](const QString& problem) { form_.Offer->Say(problem); }),
      history_(
          {*form_.History, desk_, bench_, notices_, *form_.Status, loop_, windowTexts_, system_.GetDocumentsFolder()}),
      searches_({.Desk = desk_,
                 .Bench = bench_,
                 .StateFileName = QDir(parts.SettingsFolder).filePath(u"window.ini"_s),
                 .SettingsFileName = parts.SettingsFileName,
                 .SitesFileName = parts.SitesFileName,
                 .Pace = parts.Pace,
                 .Prepare = [this] { SaveSettings(); }}),
      teaching_(*browser_.Browser, browser_.View, form_, bench_, notices_,
                [this] { return driver_.Running() || bench_.State.Parsing || loop_.Quitting(); }),
      tml_(loop_.CreateTimer(startUpDelay, [this] { tmlTimer(); })),
      tmrIndicator_(loop_.CreateTimer(indicatorInterval, [this] { FollowHarvest(); })) {
    bench_.SettingsFolder = parts.SettingsFolder;
    bench_.Saver.IsHeld = HeldByAnotherProgram;
    bench_.Saver.MovedOn = [this](const QString& held, const QString& next) {
        form_.Notice->Say(windowTexts_.With(WindowText::AutomaticFileHeld,
                                            {QDir::toNativeSeparators(held), QDir::toNativeSeparators(next)}));
    };
    bench_.Fetcher.AttemptFailed = [this](const QString& failure) { indicator_.AttemptFailed(failure); };
    bench_.Fetcher.GaveUp = [this](const QString& failure) { form_.Notice->Say(failure); };
    setObjectName(u"frmMain");
    setWindowIcon(IconOf(Glyph::Program));
    resize(1240, 760);
    form_.lvwItems->ShowLeads(model_);
    place_.Restore(*this, *form_.Splitter, *form_.lvwItems);
    ConnectHarvest();
    ConnectResults();
    ConnectStore();
    ConnectSearches();
    QDir().mkpath(parts.SettingsFolder);
    FormCreate();
}

TfrmMain::~TfrmMain() {
    bench_.Copies.Finish(); // of a harvest in whose middle the window was closed
    // A browser that goes away may still report; nobody listens any more.
    browser_.Browser->disconnect();
    if (news_.Browser)
        news_.Browser->disconnect();
}

void TfrmMain::ConnectHarvest() {
    EmbeddedBrowser* const browser = browser_.Browser.get();
    BrowserBar* const bar = form_.Bar;
    connect(form_.btnStart, &QPushButton::clicked, this, &TfrmMain::btnStartClick);
    connect(form_.btnStop, &QPushButton::clicked, this, [this] {
        driver_.Stop();
        FollowHarvest();
    });
    connect(form_.btnSettings, &QPushButton::clicked, this, &TfrmMain::btnSettingsClick);
    connect(form_.btnUpdates, &QPushButton::clicked, this, &TfrmMain::btnUpdatesClick);
    connect(form_.btnDirectories, &QPushButton::clicked, this, [this] { teaching_.ShowDirectories(this); });
    connect(&teaching_, &TeachingDesk::DirectoriesChanged, this, &TfrmMain::DirectoriesChanged);
    connect(&teaching_, &TeachingDesk::HarvestWanted, this, &TfrmMain::HarvestOfBar);
    connect(form_.cbxWebsites, &QComboBox::activated, this, &TfrmMain::cbxWebsitesChange);
    connect(form_.cbxLanguage, &QComboBox::activated, this, &TfrmMain::cbxLanguageChange);
    bar->Drive(*browser);
    connect(bar->imgHome, &QToolButton::clicked, this, [this] { selector_.GoHome(); });
    connect(bar, &BrowserBar::GoTo, this, [this, browser](const QString& address) {
        if (browserNotices_.TakesAddress(address))
            browser->Navigate(address);
    });
    connect(browser, &EmbeddedBrowser::NavigateComplete, this, &TfrmMain::ewbMainNavigateComplete);
}

void TfrmMain::ConnectResults() {
    LeadTableView* const list = form_.lvwItems;
    connect(form_.btnRSelectAll, &QPushButton::clicked, list, &QTableView::selectAll);
    connect(form_.btnRClearSelection, &QPushButton::clicked, list, &QTableView::clearSelection);
    connect(form_.btnRDelete, &QPushButton::clicked, this, &TfrmMain::btnRDeleteClick);
    connect(list, &LeadTableView::DeletePressed, this, &TfrmMain::btnRDeleteClick);
    connect(form_.btnRDeleteAll, &QPushButton::clicked, this, &TfrmMain::btnRDeleteAllClick);
    connect(form_.btnOpenWebsite, &QPushButton::clicked, this, [this] { OpenFieldOfSelected(Field::Website); });
    connect(form_.btnOpenMaps, &QPushButton::clicked, this, [this] { OpenFieldOfSelected(Field::MapLink); });
    connect(form_.btnOpenDetails, &QPushButton::clicked, this, [this] { OpenFieldOfSelected(Field::DetailsLink); });
    connect(form_.btnExportAll, &QPushButton::clicked, this, &TfrmMain::btnExportAllClick);
    connect(form_.btnExportAs, &QPushButton::clicked, this, &TfrmMain::btnExportAsClick);
}

void TfrmMain::ConnectStore() {
    NoticeBar* const offer = form_.Offer;
    connect(&desk_, &StoreDesk::Offered, this, [this](qint64 leads, qint64 /*harvests*/) {
        form_.Offer->Say(windowTexts_.With(WindowText::OfferLeads, {QLocale::system().toString(leads)}),
                         windowTexts_.Text(WindowText::OfferBringBack));
    });
    connect(offer, &NoticeBar::ActionClicked, this, [this] {
        form_.Offer->hide();
        desk_.BringBack();
    });
    connect(offer, &NoticeBar::Closed, &desk_, &StoreDesk::LetGo);
    connect(&desk_, &StoreDesk::Changed, this, [this] {
        model_.ShowPending();
        ShowListCount(bench_.Leads, bench_.Texts, *form_.Status);
    });
    connect(form_.pgcMain, &QTabWidget::currentChanged, this, [this] {
        if (form_.pgcMain->currentWidget() == form_.History)
            history_.Show();
    });
}

void TfrmMain::ConnectSearches() {
    connect(form_.btnSearches, &QPushButton::clicked, this, &TfrmMain::btnSearchesClick);
    connect(&searches_, &SearchDesk::WentOn, this,
            [this] { form_.Notice->Say(windowTexts_.Text(WindowText::SearchesWentOn)); });
    connect(&searches_, &SearchDesk::Ended, this, [this] {
        Q_EMIT desk_.Changed(); // the history has them
        if (frmSearches_ && frmSearches_->isVisible())
            return;
        const QLocale locale = QLocale::system();
        form_.Notice->Say(
            windowTexts_.With(WindowText::SearchesEnded, {locale.toString(searches_.Count(SearchState::Done)),
                                                          locale.toString(searches_.Count(SearchState::Failed)),
                                                          locale.toString(searches_.Leads())}));
    });
    connect(&searches_, &SearchDesk::Failed, this, [this](const QString& reason) { form_.Notice->Say(reason); });
}

void TfrmMain::FormCreate() {
    SetIERegistryKey(system_.BrowserEngineVersion(), QFileInfo(QCoreApplication::applicationFilePath()).fileName(),
                     system_, *browser_.Browser);
    LoadSettings();
    desk_.Open();
    form_.cbxLanguage->setCurrentIndex(std::max(0, form_.cbxLanguage->findData(bench_.Options.Language)));
    form_.cbxWebsites->addItem(u"Loading Websites...."_s);
    form_.cbxWebsites->setEnabled(false);
    form_.btnStart->setEnabled(false);
    form_.btnUpdates->setEnabled(!bench_.Sites.PublisherUpdates.isEmpty());
    LoadLanguage(bench_.Options.Language);
    setWindowTitle(QString(ProductTitle() + u' ' + ProductVersion()));
    bench_.SetUp(*browser_.Browser, news_.Browser.get());
    form_.Bar->edtAddress->setFocus();

    if (!bench_.Sites.PublisherHelp.isEmpty())
        connect(new QShortcut(QKeySequence(QKeySequence::HelpContents), this), &QShortcut::activated, this,
                [this] { links_.Open(bench_.Sites.PublisherHelp); });
}

void TfrmMain::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    // Messages are handled in `FormShow`, and the window is not on the screen before this event has returned.
    if (!std::exchange(shown_, true))
        QMetaObject::invokeMethod(this, &TfrmMain::FormShow, Qt::QueuedConnection);
}

void TfrmMain::FormShow() {
    form_.Status->PlaceGauge();
    form_.Status->SetProgressPosition(0);
    form_.pgcMain->setCurrentWidget(form_.TabSheet2);
    if (news_.Browser)
        news_.Browser->Navigate(blank);
    Delay(loop_, 500);
    if (loop_.Quitting())
        return;
    form_.pgcMain->setCurrentWidget(form_.TabSheet1);
    browser_.Browser->Navigate(blank);
    tml_->SetEnabled(true);
}

void TfrmMain::tmlTimer() {
    tml_->SetEnabled(false);
    loop_.ProcessMessages();
    if (loop_.Quitting())
        return;
    // A server that does not answer keeps nobody from the directories.
    const auto patience = loop_.CreateTimer(updatePatience, [this] { ComeUp(); });
    patience->SetEnabled(true);
    updates_.Run(false);
    ComeUp();
}

void TfrmMain::ComeUp() {
    if (ready_ || loop_.Quitting())
        return;
    ready_ = true;
    LoadCatalogue();
    if (news_.Browser)
        news_.Browser->Navigate(bench_.Sites.PublisherNews);
    history_.ApplyTexts(); // which knows the directories now
    desk_.LookForUnsettled();
    searches_.GoOn();
}

void TfrmMain::closeEvent(QCloseEvent* event) {
    if (!loop_.Quitting()) {
        FormCloseQuery();
        place_.Save(*this, *form_.Splitter, *form_.lvwItems);
    }
    event->accept();
}

void TfrmMain::FormCloseQuery() {
    bench_.State.ShouldStop = true;
    loop_.Quit();
    tml_->SetEnabled(false);
    searches_.Leave();
    bench_.Fetcher.Disconnect();
    updatePages_.Disconnect();
    browser_.Browser->Stop();
}

void TfrmMain::LoadSettings() {
    try {
        bench_.Options = settingsStore_.LoadSettings();
    } catch (const Failure& failure) {
        bench_.Options = Settings();
        bench_.Options.eExportFolder = system_.GetDocumentsFolder();
        form_.Status->SetPanel(StatusPanel::Message, failure.Message());
    }
    QStringList problems;
    bench_.More = optionsFile_.Load(problems);
    if (!problems.isEmpty())
        form_.Status->SetPanel(StatusPanel::Message, problems.first());
}

void TfrmMain::SaveSettings() {
    try {
        settingsStore_.SaveSettings(bench_.Options);
    } catch (const SaveError& error) {
        notices_.Warn(error.Message());
    }
}

void TfrmMain::LoadLanguage(const QString& code) {
    const QString text = ReadLanguageText(LanguageFileName(code));
    const LanguageFile language(text);
    if (language.IsEmpty())
        return;
    windowTexts_.Load(text);
    qtTexts_.Load(code);
    bench_.Use(language);
    model_.CaptionsChanged();
    form_.ApplyCaptions(language, windowTexts_);
    history_.ApplyTexts();
    if (frmSearches_)
        frmSearches_->ApplyTexts(windowTexts_);
    teaching_.ApplyTexts(windowTexts_, bench_.Leads.Captions);
    bench_.AnyWebsiteShown = windowTexts_.Text(WindowText::AnyWebsite);
    if (ready_ && !bench_.Catalogue.WebsiteKeys().isEmpty())
        DirectoriesChanged({}); // one of them has a name in this language
    if (!form_.cbxWebsites->isEnabled())
        form_.cbxWebsites->setItemText(0, bench_.Texts.Text(Message::LoadingWebsites));
    // The counts stand there until something is counted again, in the language of before.
    ShowListCount(bench_.Leads, bench_.Texts, *form_.Status);
    form_.Status->SetPanel(StatusPanel::ExportedCount,
                           bench_.Texts.WithNumber(Message::ExportedCount, bench_.State.ExportedNum));
}

void TfrmMain::LoadCatalogue() {
    bench_.LoadCatalogue();
    form_.cbxWebsites->clear();
    form_.cbxWebsites->addItems(bench_.Catalogue.WebsiteURLS());
    const bool any = !bench_.Catalogue.WebsiteURLS().isEmpty();
    form_.cbxWebsites->setEnabled(any);
    form_.btnStart->setEnabled(any);
    SayWhatIsWrongWithDirectories();
    if (any)
        selector_.Open(form_.cbxWebsites->currentText());
}

// In a line of its own: a panel of the status bar has no room for file, group and reason.
void TfrmMain::SayWhatIsWrongWithDirectories() {
    QStringList lines;
    for (const SitesProblem& problem : bench_.Sites.Problems)
        lines.append(problem.Text);
    lines += bench_.RecipeProblems;
    if (lines.isEmpty())
        return;
    form_.Status->SetPanel(StatusPanel::Message, lines.first());
    if (lines.size() > namedProblems)
        lines = lines.first(namedProblems) << u"\u2026 (%1)"_s.arg(lines.size());
    form_.Offer->Say(lines.join(u'\n'));
}

void TfrmMain::cbxLanguageChange(int index) {
    const QString code = form_.cbxLanguage->itemData(index).toString();
    if (code.isEmpty() || code == bench_.Options.Language)
        return;
    bench_.Options.Language = code;
    SaveSettings();
    LoadLanguage(code);
}

void TfrmMain::cbxWebsitesChange() {
    teaching_.Lesson().Leave();
    if (form_.cbxWebsites->currentText() != bench_.State.SelectedEntry)
        selector_.Change(form_.cbxWebsites->currentText());
    FollowHarvest();
    teaching_.LookSoon();
}

// The directories that were taught, imported or deleted, in the selector; the page that is shown stays.
void TfrmMain::DirectoriesChanged(const QString& code) {
    bench_.LoadCatalogue();
    const QStringList& codes = bench_.Catalogue.WebsiteKeys();
    QString chosen = code.isEmpty() ? bench_.State.CurrID : code;
    if (!codes.contains(chosen))
        chosen = AnyWebsiteCode.toString(); // which needs no other page
    form_.cbxWebsites->clear();
    form_.cbxWebsites->addItems(bench_.Catalogue.WebsiteURLS());
    const qsizetype index = std::max<qsizetype>(codes.indexOf(chosen), 0);
    form_.cbxWebsites->setCurrentIndex(static_cast<int>(index));
    bench_.State.CurrID = codes.value(index);
    bench_.State.SelectedEntry = form_.cbxWebsites->currentText();
    teaching_.LookSoon();
}

void TfrmMain::HarvestOfBar(bool asAnyWebsite) {
    if (asAnyWebsite)
        DirectoriesChanged(AnyWebsiteCode.toString());
    btnStartClick();
}

void TfrmMain::btnStartClick() {
    const bool refused = bench_.State.Parsing;
    teaching_.Lesson().Leave();
    driver_.Start();
    if (!refused)
        desk_.HarvestBegins(browser_.Browser->LocationAddress());
    FollowHarvest();
}

void TfrmMain::btnSettingsClick() {
    const MoreOptions before = bench_.More;
    TfrmSettings dialog(bench_.Options, bench_.More, bench_.Leads.Captions, system_, notices_, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    SaveSettings();
    bench_.SetUp(*browser_.Browser, news_.Browser.get());
    if (bench_.More == before)
        return;
    try {
        optionsFile_.Save(bench_.More);
    } catch (const SaveError& error) {
        notices_.Warn(error.Message());
    }
    // A store is not changed under a harvest; what was chosen holds from the next start on.
    if (!driver_.Running() && !searches_.Running())
        desk_.Open();
}

void TfrmMain::btnSearchesClick() {
    if (!frmSearches_) {
        frmSearches_ = new TfrmSearches(searches_, desk_, bench_, this);
        frmSearches_->ApplyTexts(windowTexts_);
    }
    frmSearches_->show();
    frmSearches_->raise();
    frmSearches_->activateWindow();
}

void TfrmMain::btnUpdatesClick() {
    updates_.Run(true);
}

void TfrmMain::btnRDeleteClick() {
    const std::vector<qsizetype> rows = form_.lvwItems->SelectedRows();
    const std::function<void()> gone = desk_.RowsToGo(rows);
    if (DeleteSelected(bench_.Leads, rows, bench_.State.CurrID, bench_.Texts, notices_, loop_, *form_.Status))
        gone();
}

void TfrmMain::btnRDeleteAllClick() {
    std::vector<qsizetype> rows(static_cast<size_t>(bench_.Leads.Count()));
    std::iota(rows.begin(), rows.end(), 0);
    const std::function<void()> gone = desk_.RowsToGo(std::move(rows));
    if (DeleteAll(bench_.Leads, bench_.Texts, notices_, loop_, *form_.Status))
        gone();
}

ExportCommand TfrmMain::ExportParts() {
    return {bench_.Leads,
            bench_.Options,
            bench_.Texts,
            notices_,
            *form_.Status,
            loop_,
            system_.GetDocumentsFolder(),
            FurtherFormats(windowTexts_),
            [this](const ExportLosses& losses) { return LossesText(losses, windowTexts_); }};
}

void TfrmMain::btnExportAllClick() {
    Export(form_.lvwItems->SelectedRows(), nullptr);
}

void TfrmMain::btnExportAsClick() {
    const std::vector<qsizetype> rows = form_.lvwItems->SelectedRows();
    if (const std::optional<Message> refusal = ExportRefusal(ExportParts(), rows))
        return notices_.Inform(bench_.Texts.Text(*refusal));
    TfrmExport dialog(bench_.Leads, rows, bench_.Options, windowTexts_, bench_.More.MailNameServer, this);
    if (dialog.exec() == QDialog::Accepted)
        Export(rows, &dialog);
}

void TfrmMain::Export(std::span<const qsizetype> rows, const TfrmExport* chosen) {
    form_.Results->setEnabled(false); // messages are handled meanwhile, and the rows must stay
    ExportBox box(this, bench_.Texts.Text(Message::Saving), windowTexts_.Text(WindowText::CancelExport));
    const auto progress = [&](qsizetype written, qsizetype count) {
        form_.Status->SetProgressMaximum(count);
        form_.Status->SetProgressPosition(written);
        box.Show(written, count);
        loop_.ProcessMessages();
        return !loop_.Quitting() && !box.Cancelled();
    };
    const auto waiting = [&] {
        box.ShowWaiting();
        loop_.ProcessMessages();
        return !loop_.Quitting() && !box.Cancelled();
    };
    const bool saved = chosen ? ExportAs(ExportParts(), chosen->Format(), chosen->Extra(waiting), rows, progress)
                              : ExportSelected(ExportParts(), rows, progress);
    form_.Status->SetProgressPosition(0);
    form_.Results->setEnabled(true);
    if (saved)
        desk_.RowsExported({rows.begin(), rows.end()});
}

void TfrmMain::OpenFieldOfSelected(Field field) {
    const qsizetype row = form_.lvwItems->Selected();
    if (row >= 0)
        links_.Open(bench_.Leads.FieldAt(row, field));
}

void TfrmMain::ewbMainNavigateComplete() {
    form_.Bar->edtAddress->setText(browser_.Browser->LocationAddress());
}

void TfrmMain::FollowHarvest() {
    const bool running = driver_.Running();
    if (std::exchange(harvesting_, running) && !running) {
        desk_.HarvestEnded();
        EndCopies();
        teaching_.HarvestEnded();
    }
    form_.ShowRunning(running);
    indicator_.Follow(running);
    tmrIndicator_->SetEnabled(running && !loop_.Quitting());
}

void TfrmMain::EndCopies() {
    const Brindle::EndCopies::Ending ending = bench_.Copies.Finish();
    for (const QString& problem : ending.Problems)
        form_.Notice->Say(problem);
    if (ending.Saved.isEmpty())
        return;
    QStringList names;
    for (const QString& fileName : ending.Saved)
        names.append(QDir::toNativeSeparators(fileName));
    QString said = windowTexts_.With(WindowText::EndCopiesSaved, {names.join(u", "_s)});
    if (!ending.Losses.IsEmpty())
        said += u' ' + LossesText(ending.Losses, windowTexts_);
    form_.Status->SetPanel(StatusPanel::Message, said);
}

void TfrmMain::PageIncomplete(const QString& page) {
    indicator_.PageIncomplete(page);
}

void TfrmMain::PageRead() {
    model_.ShowPending();
    indicator_.PageRead();
    desk_.PageRead();
}

void TfrmMain::PageGivenUp(const QString& address, const QString& reason) {
    indicator_.PageGivenUp(address, reason);
    // The notice of the page would go with the page, which is left at once; a question that is open stays.
    NoticeBar* const bar = form_.Offer->Asks() ? form_.Notice : form_.Offer;
    bar->Say(windowTexts_.With(WindowText::HarvestPageGivenUp, {address, reason}));
}

void TfrmMain::PagesRepeat(const QString& address) {
    form_.Notice->Say(windowTexts_.With(WindowText::HarvestGoesRound, {address}));
}

void TfrmMain::HarvestEnded() {
    FollowHarvest();
}

} // namespace Brindle
