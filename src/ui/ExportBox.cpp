#include "ui/ExportBox.h"

namespace Brindle {

namespace {

constexpr qsizetype longExport = 100'000; // rows; fewer are written in the twinkling of an eye
constexpr int steps = 1000;               // of the bar; the rows may be more than an int can count

} // namespace

ExportBox::ExportBox(QWidget* parent, QString text, QString cancel)
    : parent_(parent), text_(std::move(text)), cancel_(std::move(cancel)) {}

void ExportBox::Show(qsizetype rowsWritten, qsizetype rows) {
    if (rows < longExport)
        return;
    if (!box_) {
        box_ = std::make_unique<QProgressDialog>(text_, cancel_, 0, steps, parent_);
        box_->setWindowModality(Qt::WindowModal);
        box_->setWindowTitle(parent_->windowTitle());
        box_->setMinimumDuration(0);
    }
    box_->setValue(static_cast<int>(static_cast<double>(rowsWritten) / static_cast<double>(rows) * steps));
}

} // namespace Brindle
