#pragma once

#include <QString>

class QMainWindow;
class QSplitter;
class QTableView;

namespace Brindle {

/// Remembers how the user has arranged the window, in a file beside the settings: its place, the splitter's and the
/// widths of the columns.
class WindowPlace {
public:
    explicit WindowPlace(QString fileName) : fileName_(std::move(fileName)) {}

    /// Arranges the window as it was left last; what was never stored, or cannot be read, stays as it is.
    void Restore(QMainWindow& window, QSplitter& splitter, QTableView& list) const;
    /// Failures are ignored: nothing is lost but a habit.
    void Save(const QMainWindow& window, const QSplitter& splitter, const QTableView& list) const;

private:
    QString fileName_;
};

} // namespace Brindle
