#pragma once

#include "ui/LeadTableModel.h"

#include <QTableView>

#include <vector>

namespace Brindle {

/// The results list on the screen: read-only, whole rows, grid lines, extended selection. Ctrl+C copies the selected
/// rows, Ctrl+A selects all; a click on a header does nothing.
class LeadTableView : public QTableView {
    Q_OBJECT

public:
    explicit LeadTableView(QWidget* parent = nullptr);

    /// Shows a results list from now on.
    void ShowLeads(LeadTableModel& model);

    /// The selected rows, ascending.
    std::vector<qsizetype> SelectedRows() const;
    /// The row that has the focus when it is selected, otherwise the first selected row; -1 when none is selected.
    qsizetype Selected() const;
    /// Puts the selected rows on the clipboard: one line per row, fields separated by tabs.
    void CopySelected() const;
    /// Selects every row, also those that have just come in.
    void selectAll() override;

Q_SIGNALS:
    /// The Delete key was pressed.
    void DeletePressed();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// Comes back to the same place of the list after rows were removed.
    void reset() override;

private:
    LeadTableModel* model_ = nullptr;
};

} // namespace Brindle
