#include "ui/TfrmMain.h"

#include "adapters/Adapters.h"
#include "core/Delay.h"
#include "core/Errors.h"
#include "core/LeadListCommands.h"
#include "export/CsvExport.h"
#include "net/CustomProxy.h"
#include "ui/BrowserEmulation.h"
#include "ui/ExportBox.h"
#include "ui/Icons.h"
#include "ui/TfrmSettings.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QShortcut>

#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int edition = 0;
constexpr int startUpDelay = 100;
constexpr int indicatorInterval = 500;
constexpr std::array<QStringView, 4> languageCodes{u"en", u"fr", u"es", u"it"};
const QString blank = u"about:blank"_s;

ShownBrowser NewsBrowser(const MainWindowParts& parts) {
    if (parts.Sites.PublisherNews.isEmpty())
        return {nullptr, new QWidget}; // an engine of its own for an empty page would only cost memory
    return parts.CreateBrowser(parts.Loop, QString());
}

} // namespace

QString ProductTitle() {
    return u"Brindle"_s;
}

TfrmMain::TfrmMain(const MainWindowParts& parts)
    : loop_(parts.Loop),
      system_(parts.System),
      sites_(parts.Sites),
      browser_(parts.CreateBrowser(parts.Loop, QDir(parts.SettingsFolder).filePath(u"browser"_s))),
      news_(NewsBrowser(parts)),
      form_(*this, browser_.View, news_.View),
      messageBoxes_(this, loop_),
      notices_(parts.Notices ? *parts.Notices : messageBoxes_),
      store_(parts.SettingsFileName, system_.GetDocumentsFolder()),
      place_(QDir(parts.SettingsFolder).filePath(u"window.ini"_s)),
      idHttp1_(state_, options_, texts_, loop_, *form_.Status),
      emails_(state_, options_, idHttp1_),
      saver_(state_, options_, leads_, texts_, *form_.Status, loop_),
      harvest_(
          {state_, leads_, options_, texts_, catalogue_, loop_, *form_.Status, notices_, idHttp1_, emails_, saver_}),
      driver_(harvest_, *browser_.Browser, SiteAdapters(), this),
      selector_(harvest_, driver_, *browser_.Browser, system_),
      updatePages_(updateState_, options_, texts_, loop_, *form_.Status),
      updates_({updatePages_, texts_, notices_, *form_.Status, system_, loop_}, sites_.PublisherUpdates,
               QStringLiteral(BRINDLE_VERSION)),
      links_(system_, notices_, windowTexts_),
      browserNotices_(*browser_.Browser, *form_.Notice, windowTexts_),
      indicator_(harvest_, *form_.Status, windowTexts_),
      tml_(loop_.CreateTimer(startUpDelay, [this] { tmlTimer(); })),
      tmrIndicator_(loop_.CreateTimer(indicatorInterval, [this] { FollowHarvest(); })) {
    setObjectName(u"frmMain");
    setWindowIcon(IconOf(Glyph::Program));
    resize(1240, 760);
    form_.lvwItems->ShowLeads(model_);
    place_.Restore(*this, *form_.Splitter, *form_.lvwItems);
    ConnectHarvest();
    ConnectResults();
    QDir().mkpath(parts.SettingsFolder);
    FormCreate();
}

TfrmMain::~TfrmMain() {
    // A browser that goes away may still report; nobody listens any more.
    browser_.Browser->disconnect();
    if (news_.Browser)
        news_.Browser->disconnect();
}

void TfrmMain::ConnectHarvest() {
    EmbeddedBrowser* const browser = browser_.Browser.get();
    const BrowserBar* const bar = form_.Bar;
    connect(form_.btnStart, &QPushButton::clicked, this, [this] {
        driver_.Start();
        FollowHarvest();
    });
    connect(form_.btnStop, &QPushButton::clicked, this, [this] {
        driver_.Stop();
        FollowHarvest();
    });
    connect(form_.btnSettings, &QPushButton::clicked, this, &TfrmMain::btnSettingsClick);
    connect(form_.btnUpdates, &QPushButton::clicked, this, &TfrmMain::btnUpdatesClick);
    connect(form_.cbxWebsites, &QComboBox::activated, this, &TfrmMain::cbxWebsitesChange);
    connect(form_.cbxLanguage, &QComboBox::activated, this, &TfrmMain::cbxLanguageChange);
    connect(bar->imgBack, &QToolButton::clicked, this, [this] { driver_.GoBack(); });
    connect(bar->imgForward, &QToolButton::clicked, this, [this] { driver_.GoForward(); });
    connect(bar->imgStop, &QToolButton::clicked, this, [this] { driver_.StopLoading(); });
    connect(bar->imgRefresh, &QToolButton::clicked, this, [this] { driver_.Refresh(); });
    connect(bar->imgHome, &QToolButton::clicked, this, [this] { driver_.GoHome(); });
    connect(bar, &BrowserBar::GoTo, this, [this](const QString& address) {
        if (browserNotices_.TakesAddress(address))
            driver_.Go(address);
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
}

void TfrmMain::FormCreate() {
    SetIERegistryKey(system_.BrowserEngineVersion(), QFileInfo(QCoreApplication::applicationFilePath()).fileName(),
                     system_, *browser_.Browser);
    LoadSettings();
    const auto code = std::find(languageCodes.begin(), languageCodes.end(), options_.Language);
    form_.cbxLanguage->setCurrentIndex(code == languageCodes.end() ? 0
                                                                   : static_cast<int>(code - languageCodes.begin()));
    form_.cbxWebsites->addItem(u"Loading Websites...."_s);
    form_.cbxWebsites->setEnabled(false);
    form_.btnStart->setEnabled(false);
    form_.btnUpdates->setEnabled(!sites_.PublisherUpdates.isEmpty());
    LoadLanguage(options_.Language);
    setWindowTitle(ProductTitle() + QStringLiteral(" " BRINDLE_VERSION));
    ApplyProxy();
    form_.Bar->edtAddress->setFocus();

    if (!sites_.PublisherHelp.isEmpty())
        connect(new QShortcut(QKeySequence(QKeySequence::HelpContents), this), &QShortcut::activated, this,
                [this] { links_.Open(sites_.PublisherHelp); });
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
    LoadCatalogue();
    if (news_.Browser)
        news_.Browser->Navigate(sites_.PublisherNews);
    ready_ = true;
    // Last, because its server may keep it waiting, and nobody has asked for it.
    updates_.Run(false);
}

void TfrmMain::closeEvent(QCloseEvent* event) {
    if (!loop_.Quitting()) {
        FormCloseQuery();
        place_.Save(*this, *form_.Splitter, *form_.lvwItems);
    }
    event->accept();
}

void TfrmMain::FormCloseQuery() {
    state_.ShouldStop = true;
    loop_.Quit();
    tml_->SetEnabled(false);
    idHttp1_.Disconnect();
    updatePages_.Disconnect();
    browser_.Browser->Stop();
}

void TfrmMain::LoadSettings() {
    try {
        options_ = store_.LoadSettings();
    } catch (const Failure& failure) {
        options_ = Settings();
        options_.eExportFolder = system_.GetDocumentsFolder();
        form_.Status->SetPanel(0, failure.Message());
    }
}

void TfrmMain::SaveSettings() {
    try {
        store_.SaveSettings(options_);
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
    leads_.Captions = language.ColumnCaptions();
    language.FillMessages(texts_, edition, ProductTitle());
    model_.CaptionsChanged();
    form_.ApplyCaptions(language, windowTexts_);
    if (!form_.cbxWebsites->isEnabled())
        form_.cbxWebsites->setItemText(0, texts_.Text(Message::LoadingWebsites));
    // The counts stand there until something is counted again, in the language of before.
    ShowListCount(leads_, texts_, *form_.Status);
    form_.Status->SetPanel(2, texts_.WithNumber(Message::ExportedCount, state_.ExportedNum));
}

void TfrmMain::LoadCatalogue() {
    catalogue_ = sites_.Catalogue();
    form_.cbxWebsites->clear();
    form_.cbxWebsites->addItems(catalogue_.WebsiteURLS());
    const bool any = !catalogue_.WebsiteURLS().isEmpty();
    form_.cbxWebsites->setEnabled(any);
    form_.btnStart->setEnabled(any);
    if (!sites_.Problems.empty())
        form_.Status->SetPanel(0, sites_.Problems.front().Text);
    if (any)
        selector_.Open(form_.cbxWebsites->currentText());
}

void TfrmMain::ApplyProxy() {
    SetCustomProxy(*browser_.Browser, options_,
                   sites_.BrowserUserAgent.isEmpty() ? BrowserUserAgent() : sites_.BrowserUserAgent);
}

void TfrmMain::cbxLanguageChange(int index) {
    const bool known = index >= 0 && index < static_cast<int>(languageCodes.size());
    const QString code = known ? languageCodes.at(static_cast<size_t>(index)).toString() : options_.Language;
    if (code == options_.Language)
        return;
    options_.Language = code;
    SaveSettings();
    LoadLanguage(options_.Language);
}

void TfrmMain::cbxWebsitesChange() {
    if (form_.cbxWebsites->currentText() != state_.SelectedEntry)
        selector_.Change(form_.cbxWebsites->currentText());
    FollowHarvest();
}

void TfrmMain::btnSettingsClick() {
    TfrmSettings dialog(options_, leads_.Captions, system_, notices_, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    SaveSettings();
    ApplyProxy();
}

void TfrmMain::btnUpdatesClick() {
    updates_.Run(true);
}

void TfrmMain::btnRDeleteClick() {
    const std::vector<qsizetype> rows = form_.lvwItems->SelectedRows();
    DeleteSelected(leads_, rows, state_.CurrID, texts_, notices_, loop_, *form_.Status);
}

void TfrmMain::btnRDeleteAllClick() {
    DeleteAll(leads_, texts_, notices_, loop_, *form_.Status);
}

void TfrmMain::btnExportAllClick() {
    const std::vector<qsizetype> rows = form_.lvwItems->SelectedRows();
    form_.Results->setEnabled(false); // messages are handled meanwhile, and the rows must stay
    ExportBox box(this, texts_.Text(Message::Saving), windowTexts_.Text(WindowText::CancelExport));
    ExportSelected({leads_, options_, texts_, notices_, *form_.Status, loop_, system_.GetDocumentsFolder()}, rows,
                   [&](qsizetype written, qsizetype count) {
                       form_.Status->SetProgressMaximum(count);
                       form_.Status->SetProgressPosition(written);
                       box.Show(written, count);
                       loop_.ProcessMessages();
                       return !loop_.Quitting() && !box.Cancelled();
                   });
    form_.Status->SetProgressPosition(0);
    form_.Results->setEnabled(true);
}

void TfrmMain::OpenFieldOfSelected(Field field) {
    const qsizetype row = form_.lvwItems->Selected();
    if (row >= 0)
        links_.Open(leads_.FieldAt(row, field));
}

void TfrmMain::ewbMainNavigateComplete() {
    form_.Bar->edtAddress->setText(browser_.Browser->LocationAddress());
}

void TfrmMain::FollowHarvest() {
    const bool running = driver_.Running();
    form_.ShowRunning(running);
    indicator_.Follow(running);
    tmrIndicator_->SetEnabled(running && !loop_.Quitting());
}

void TfrmMain::PageIncomplete(const QString& page) {
    indicator_.PageIncomplete(page);
}

void TfrmMain::PageRead() {
    model_.ShowPending();
    indicator_.PageRead();
}

void TfrmMain::PageGivenUp(const QString& address, const QString& reason) {
    indicator_.PageGivenUp(address, reason);
    form_.Notice->Say(windowTexts_.With(WindowText::HarvestPageGivenUp, {address, reason}));
}

void TfrmMain::PagesRepeat(const QString& address) {
    form_.Notice->Say(windowTexts_.With(WindowText::HarvestGoesRound, {address}));
}

void TfrmMain::HarvestEnded() {
    FollowHarvest();
}

} // namespace Brindle
