#pragma once

#include "core/HarvestDriver.h"
#include "core/Platform.h"
#include "core/SitesFile.h"
#include "export/AutomaticSaver.h"
#include "i18n/WindowTexts.h"
#include "net/EmailHarvester.h"
#include "net/PageFetcher.h"
#include "settings/SettingsStore.h"
#include "ui/BrowserNotices.h"
#include "ui/BrowserViews.h"
#include "ui/HarvestIndicator.h"
#include "ui/LinkOpener.h"
#include "ui/MainForm.h"
#include "ui/MessageBoxDialogs.h"
#include "ui/QtTranslations.h"
#include "ui/SiteSelector.h"
#include "ui/UpdateCheck.h"
#include "ui/WindowPlace.h"

#include <QMainWindow>

namespace Brindle {

/// What the main window is given; all of it must outlive the window.
struct MainWindowParts {
    MessageLoop& Loop;
    Platform& System;
    SitesFile Sites;
    QString SettingsFolder;   ///< window.ini and the browser's profile
    QString SettingsFileName; ///< settings.dat
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
    LeadList& Leads() { return leads_; }
    HarvestState& State() { return state_; }
    Settings& Options() { return options_; }
    EmbeddedBrowser& ewbMain() { return *browser_.Browser; }
    HarvestDriver& Driver() { return driver_; }
    PageFetcher& IdHTTP1() { return idHttp1_; }

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // The life cycle, in this order.
    void FormCreate();
    void FormShow();
    void tmlTimer();
    void FormCloseQuery();

    void ConnectHarvest();
    void ConnectResults();
    void LoadSettings();
    void SaveSettings();
    void LoadLanguage(const QString& code);
    void LoadCatalogue();
    void ApplyProxy();

    void cbxLanguageChange(int index);
    void cbxWebsitesChange();
    void btnSettingsClick();
    void btnUpdatesClick();
    void btnRDeleteClick();
    void btnRDeleteAllClick();
    void btnExportAllClick();
    void OpenFieldOfSelected(Field field);
    void ewbMainNavigateComplete();

    void FollowHarvest();
    void PageIncomplete(const QString& page) override;
    void PageRead() override;
    void PageGivenUp(const QString& address, const QString& reason) override;
    void PagesRepeat(const QString& address) override;
    void HarvestEnded() override;

    MessageLoop& loop_;
    Platform& system_;
    const SitesFile sites_;
    ShownBrowser browser_;
    ShownBrowser news_; // without a browser where the publisher has no news
    MainForm form_;
    MessageBoxDialogs messageBoxes_;
    Dialogs& notices_;
    SettingsStore store_;
    WindowPlace place_;

    Settings options_;
    MessageTexts texts_;
    WindowTexts windowTexts_;
    QtTranslations qtTexts_;
    LeadList leads_;
    LeadTableModel model_{leads_};
    HarvestState state_;
    SiteCatalogue catalogue_;
    PageFetcher idHttp1_;
    EmailHarvester emails_;
    AutomaticSaver saver_;
    Harvest harvest_;
    HarvestDriver driver_;
    SiteSelector selector_;
    HarvestState updateState_; // of a client of its own: a harvest may begin while the server is waited for
    PageFetcher updatePages_;
    UpdateCheck updates_;
    LinkOpener links_;
    BrowserNotices browserNotices_;
    HarvestIndicator indicator_;
    std::unique_ptr<MessageLoop::Timer> tml_;
    std::unique_ptr<MessageLoop::Timer> tmrIndicator_;
    bool shown_ = false;
    bool ready_ = false;
};

/// The title that the program has in its captions.
QString ProductTitle();

} // namespace Brindle
