#pragma once

#include "i18n/LanguageFile.h"
#include "ui/AccessKeys.h"
#include "ui/BrowserBar.h"
#include "ui/LeadTableView.h"
#include "ui/StatusBarView.h"

#include <QComboBox>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>

namespace Brindle {

/// The controls of the main window, how they are laid out and what they say. It knows nothing of what they do.
class MainForm {
public:
    /// Builds the controls into the window. `browserView` is what the embedded browser shows, `newsView` the news page.
    MainForm(QMainWindow& window, QWidget* browserView, QWidget* newsView);

    /// Puts the texts of a language file into the captions; what the file lacks becomes an empty caption.
    void ApplyCaptions(const LanguageFile& language);

    QLabel* lblCurrentLanguage;
    QComboBox* cbxLanguage;
    QLabel* lblWebsite;
    QComboBox* cbxWebsites;
    QPushButton* btnStart;
    QPushButton* btnStop;
    QPushButton* btnSettings;
    QPushButton* btnUpdates;
    QTabWidget* pgcMain;
    QWidget* TabSheet1; ///< the browser page
    QWidget* TabSheet2; ///< the news page
    BrowserBar* Bar;
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
    StatusBarView* Status;

private:
    QLayout* BuildTop(QWidget* parent);
    QWidget* BuildBrowserPage(QWidget* browserView);
    QWidget* BuildResults(QWidget* parent);
    void NameForScreenReaders();

    AccessKeys keys_;
};

} // namespace Brindle
