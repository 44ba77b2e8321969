#pragma once

#include "core/HarvestDriver.h"
#include "core/Platform.h"
#include "export/ExportCommand.h"
#include "i18n/WindowTexts.h"
#include "settings/OptionsFile.h"
#include "settings/SettingsStore.h"
#include "ui/BrowserNotices.h"
#include "ui/BrowserViews.h"
#include "ui/HarvestIndicator.h"
#include "ui/History.h"
#include "ui/LinkOpener.h"
#include "ui/MainForm.h"
#include "ui/MessageBoxDialogs.h"
#include "ui/QtTranslations.h"
#include "ui/SearchDesk.h"
#include "ui/SiteSelector.h"
#include "ui/UpdateCheck.h"
#include "ui/WindowPlace.h"
#include "ui/teach/TeachingDesk.h"
#include "workbench/Workbench.h"

#include <QMainWindow>

namespace Brindle {

class TfrmExport;
class TfrmSearches;

/// What the main window is given; all of it must outlive the window.
struct MainWindowParts {
    MessageLoop& Loop;
    Platform& System;
    SitesFile Sites;
    QString SettingsFolder;   ///< window.ini and the browser's profile
    QString SettingsFileName; ///< settings.dat
    QString SitesFileName;    ///< what `Sites` was read from, for processes that are started; empty: the program's
    double Pace = 1.0;        ///< the same: of the waits
    BrowserFactory CreateBrowser;
    Dialogs* Notices = nullptr; ///< null: message boxes
};

/// The main window. It owns everything for the whole run and connects it: what a control does is done by a class of its
/// own.
///
/// A harvest runs inside nested handling of messages, so the window can be closed in the middle of it. Closing hides
/// the window and makes every wait and transfer return; the window must be destroyed from outside of its own messages,
/// when they have returned.
class TfrmMain : public QMainWindow, private HarvestObserver {
    Q_OBJECT

public:
    explicit TfrmMain(const MainWindowParts& parts);
    ~TfrmMain() override;

    /// The window has gone through its start and can be used.
    bool Ready() const { return ready_; }

    // The state that tests look at.
    LeadList& Leads() { return bench_.Leads; }
    HarvestState& State() { return bench_.State; }
    Settings& Options() { return bench_.Options; }
    EmbeddedBrowser& ewbMain() { return *browser_.Browser; }
    HarvestDriver& Driver() { return driver_; }
    StoreDesk& Desk() { return desk_; }
    SearchDesk& Searches() { return searches_; }
    Workbench& Bench() { return bench_; }
    PageFetcher& IdHTTP1() { return bench_.Fetcher; }
    TeachingDesk& Lessons() { return teaching_; }

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // The life cycle, in this order.
    void FormCreate();
    void FormShow();
    void tmlTimer();
    void ComeUp();
    void FormCloseQuery();

    void ConnectHarvest();
    void ConnectResults();
    void ConnectStore();
    void ConnectSearches();
    void LoadSettings();
    void SaveSettings();
    void LoadLanguage(const QString& code);
    void LoadCatalogue();
    void SayWhatIsWrongWithDirectories();

    void cbxLanguageChange(int index);
    void cbxWebsitesChange();
    void btnStartClick();
    void btnSettingsClick();
    void btnSearchesClick();
    void DirectoriesChanged(const QString& code);
    void HarvestOfBar(bool asAnyWebsite);
    void btnUpdatesClick();
    void btnRDeleteClick();
    void btnRDeleteAllClick();
    void btnExportAllClick();
    void btnExportAsClick();
    void Export(std::span<const qsizetype> rows, const TfrmExport* chosen);
    ExportCommand ExportParts();
    void OpenFieldOfSelected(Field field);
    void ewbMainNavigateComplete();

    void FollowHarvest();
    void EndCopies();
    void PageIncomplete(const QString& page) override;
    void PageRead() override;
    void PageGivenUp(const QString& address, const QString& reason) override;
    void PagesRepeat(const QString& address) override;
    void HarvestEnded() override;

    MessageLoop& loop_;
    Platform& system_;
    ShownBrowser browser_;
    ShownBrowser news_; // without a browser where the publisher has no news
    MainForm form_;
    MessageBoxDialogs messageBoxes_;
    Dialogs& notices_;
    SettingsStore settingsStore_;
    OptionsFile optionsFile_;
    WindowPlace place_;

    WindowTexts windowTexts_;
    QtTranslations qtTexts_;
    Workbench bench_;
    LeadTableModel model_{bench_.Leads};
    HarvestDriver driver_;
    SiteSelector selector_;
    HarvestState updateState_; // of a client of its own: a harvest may begin while the server is waited for
    PageFetcher updatePages_;
    UpdateCheck updates_;
    LinkOpener links_;
    BrowserNotices browserNotices_;
    HarvestIndicator indicator_;
    StoreDesk desk_;
    History history_;
    SearchDesk searches_;
    TfrmSearches* frmSearches_ = nullptr; // the window's, from when it is wanted first
    TeachingDesk teaching_;
    std::unique_ptr<MessageLoop::Timer> tml_;
    std::unique_ptr<MessageLoop::Timer> tmrIndicator_;
    bool shown_ = false;
    bool harvesting_ = false;
    bool ready_ = false;
};

} // namespace Brindle
