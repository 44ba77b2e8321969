#pragma once

#include "i18n/LanguageFile.h"
#include "i18n/WindowTexts.h"
#include "ui/AccessKeys.h"
#include "ui/BrowserBar.h"
#include "ui/HistoryPage.h"
#include "ui/LeadTableView.h"
#include "ui/NoticeBar.h"
#include "ui/StatusBarView.h"
#include "ui/teach/AnyPageBar.h"
#include "ui/teach/TeachPanel.h"

#include <QComboBox>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>

#include <optional>

namespace Brindle {

/// The controls of the main window, how they are laid out and what they say. It knows nothing of what they do.
class MainForm {
public:
    /// Builds the controls into the window. `browserView` is what the embedded browser shows, `newsView` the news page.
    MainForm(QMainWindow& window, QWidget* browserView, QWidget* newsView);

    /// Puts the texts of a language file into the captions; what the file lacks becomes an empty caption.
    void ApplyCaptions(const LanguageFile& language, const WindowTexts& texts);
    /// Get Data and Stop show which of them makes sense; both can be pressed at any time.
    void ShowRunning(bool running);

    QLabel* lblCurrentLanguage;
    QComboBox* cbxLanguage;
    QLabel* lblWebsite;
    QComboBox* cbxWebsites;
    QPushButton* btnDirectories;
    QPushButton* btnSearches;
    QPushButton* btnStart;
    QPushButton* btnStop;
    QPushButton* btnSettings;
    QPushButton* btnUpdates;
    QTabWidget* pgcMain;
    QWidget* TabSheet1; ///< the browser page
    QWidget* TabSheet2; ///< the news page
    HistoryPage* History;
    NoticeBar* Offer; ///< above the results list
    BrowserBar* Bar;
    NoticeBar* Notice;  ///< above the page
    AnyPageBar* AnyBar; ///< above the page: what the program sees on it
    TeachPanel* Teach;  ///< beside the page, hidden; its table lies in place of the results list
    QSplitter* Splitter;
    QWidget* Results; ///< everything below the splitter
    QLabel* panResultsHeader;
    LeadTableView* lvwItems;
    QPushButton* btnRSelectAll;
    QPushButton* btnRClearSelection;
    QPushButton* btnRDelete;
    QPushButton* btnRDeleteAll;
    QPushButton* btnOpenWebsite;
    QPushButton* btnOpenMaps;
    QPushButton* btnOpenDetails;
    QPushButton* btnExportAll;
    QPushButton* btnExportAs;
    StatusBarView* Status;

private:
    QLayout* BuildTop(QWidget* parent);
    QWidget* BuildBrowserPage(QWidget* browserView);
    QWidget* BuildResults(QWidget* parent);
    void NameForScreenReaders();

    AccessKeys keys_;
    std::optional<bool> running_; // as the buttons show it
};

} // namespace Brindle
