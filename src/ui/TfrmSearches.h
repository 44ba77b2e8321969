#pragma once

#include "i18n/WindowTexts.h"
#include "ui/AccessKeys.h"
#include "ui/SearchDesk.h"

#include <QAbstractTableModel>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>

namespace Brindle {

/// The searches of a list and how far each one is.
class SearchesModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Line, Directory, Search, State, Pages, Leads, Trouble, ColumnCount };

    SearchesModel(const SearchDesk& desk, const SiteCatalogue& catalogue) : desk_(desk), catalogue_(catalogue) {}

    /// The rows of the desk have changed.
    void Update();
    void SetTexts(const WindowTexts& texts);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const SearchDesk& desk_;
    const SiteCatalogue& catalogue_;
    QString list_; // that is shown
    int shown_ = 0;
    QStringList captions_;
    QStringList states_;
};

/// The dialog "Searches": a table of searches, typed, pasted or from a file, and the progress of those that are being
/// made. It can be closed while they are.
class TfrmSearches : public QDialog {
    Q_OBJECT

public:
    static constexpr int MostJobs = 16;
    static constexpr qsizetype NamedProblems = 4;

    TfrmSearches(SearchDesk& desk, StoreDesk& store, const Workbench& bench, QWidget* parent);

    void ApplyTexts(const WindowTexts& texts);
    /// Asks for a file to read; nothing when it was given up. A box unless a test answers.
    std::function<QString()> AskFile;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void Check();
    void AddRow();
    void OpenFile();
    void ShowProgress();
    void OpenLeads();
    /// The list that was made last, as a table.
    QString LastTable() const;

    SearchDesk& desk_;
    StoreDesk& store_;
    const Workbench& bench_;
    WindowTexts texts_;
    SearchTable table_; // as it stands in the edit
    SearchesModel model_;
    AccessKeys keys_{QString()};

    QLabel* lblDirectory_;
    QComboBox* cbxDirectory_;
    QLabel* lblWhat_;
    QLineEdit* edtWhat_;
    QLabel* lblWhere_;
    QLineEdit* edtWhere_;
    QPushButton* btnAdd_;
    QPushButton* btnFile_;
    QLabel* lblTable_;
    QPlainTextEdit* edtTable_;
    QLabel* lblVerdict_;
    QLabel* lblJobs_;
    QSpinBox* edtJobs_;
    QCheckBox* chkRobots_;
    QPushButton* btnRun_;
    QPushButton* btnStop_;
    QPushButton* btnRetry_;
    QTableView* lvwSearches_;
    QLabel* lblProgress_;
    QPushButton* btnOpen_;
    QPushButton* btnClose_;
};

} // namespace Brindle
