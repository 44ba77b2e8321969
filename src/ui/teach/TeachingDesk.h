#pragma once

#include "ui/MainForm.h"
#include "ui/teach/AnyPageWatch.h"
#include "ui/teach/Teaching.h"
#include "workbench/Workbench.h"

#include <QObject>

namespace Brindle {

/// What the main window has for directories that nobody wrote an adapter for: the bar above their pages, teaching, and
/// the list of the directories. It knows the window's controls and the workbench; the window only asks for it.
class TeachingDesk : public QObject {
    Q_OBJECT

public:
    /// `busy`: a harvest is running.
    TeachingDesk(EmbeddedBrowser& browser, QWidget* view, MainForm& form, Workbench& bench, Dialogs& notices,
                 std::function<bool()> busy);

    void ApplyTexts(const WindowTexts& texts, const QStringList& captions);
    /// The user chose a site.
    void LookSoon() { watch_.LookSoon(); }
    /// What it found is held against what its directory was taught with.
    void HarvestEnded();
    Teaching& Lesson() { return teaching_; }
    AnyPageWatch& Watch() { return watch_; }
    /// The dialog with the directories; what it changed is in the selector afterwards.
    void ShowDirectories(QWidget* window);

Q_SIGNALS:
    /// The directories are others now; `code`: the one to select, empty for the one that is selected.
    void DirectoriesChanged(const QString& code);
    /// Get Data was pressed in the bar.
    void HarvestWanted(bool asAnyWebsite);

private:
    ChosenSite Chosen() const;
    void ShowTeaching(bool teaching);
    void ShowHeading();

    MainForm& form_;
    Workbench& bench_;
    Dialogs& notices_;
    WindowTexts texts_;
    QString results_; // the heading of the results
    Teaching teaching_;
    AnyPageWatch watch_;
    QList<int> sizes_; // of page and results, before teaching
};

} // namespace Brindle
