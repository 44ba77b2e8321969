#pragma once

#include <QElapsedTimer>
#include <QProgressDialog>
#include <QString>

#include <memory>

namespace Brindle {

/// The box of an export that takes a while: how far it is, and a button that cancels it. A short export shows none.
class ExportBox {
public:
    ExportBox(QWidget* parent, QString text, QString cancel);

    void Show(qsizetype rowsWritten, qsizetype rows);
    /// Somebody who is asked for a row takes his time.
    void ShowWaiting();
    bool Cancelled() const { return box_ && box_->wasCanceled(); }

private:
    void Make();

    QWidget* parent_;
    QString text_;
    QString cancel_;
    std::unique_ptr<QProgressDialog> box_;
    QElapsedTimer begun_;
};

} // namespace Brindle
