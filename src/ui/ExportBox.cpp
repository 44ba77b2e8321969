#include "ui/ExportBox.h"

namespace Brindle {

namespace {

constexpr qsizetype longExport = 100'000; // rows; fewer are written in the twinkling of an eye
constexpr qint64 patience = 500;          // milliseconds
constexpr int steps = 1000;               // of the bar; the rows may be more than an int can count

} // namespace

ExportBox::ExportBox(QWidget* parent, QString text, QString cancel)
    : parent_(parent), text_(std::move(text)), cancel_(std::move(cancel)) {
    begun_.start();
}

void ExportBox::Make() {
    box_ = std::make_unique<QProgressDialog>(text_, cancel_, 0, steps, parent_);
    box_->setWindowModality(Qt::WindowModal);
    box_->setWindowTitle(parent_->windowTitle());
    box_->setMinimumDuration(0);
    box_->setAutoReset(false);
    box_->setAutoClose(false);
}

void ExportBox::ShowWaiting() {
    if (box_ || begun_.elapsed() < patience)
        return;
    Make();
    box_->setValue(0);
}

void ExportBox::Show(qsizetype rowsWritten, qsizetype rows) {
    if (!box_ && rows < longExport)
        return;
    if (!box_)
        Make();
    box_->setValue(static_cast<int>(static_cast<double>(rowsWritten) / static_cast<double>(rows) * steps));
}

} // namespace Brindle
