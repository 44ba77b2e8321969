#include "ui/StatusBarView.h"

#include "ui/ElidedLabel.h"

#include <QEvent>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<int, StatusBarView::PanelCount> widths{350, 160, 170, 0, 0}; // 0: as wide as it needs
constexpr int gaugeSteps = 1'000'000;

constexpr int widestActivity = 460;

} // namespace

StatusBarView::StatusBarView(QWidget* parent)
    : QStatusBar(parent), activity_(new ElidedLabel(Qt::ElideRight, this)), mainGauge_(new QProgressBar(this)) {
    setObjectName(u"StatusBar");
    setContentsMargins(6, 0, 0, 0);
    for (int panel = 0; panel < PanelCount; ++panel) {
        QLabel*& label = panels_.at(static_cast<size_t>(panel));
        const bool fitsItsText = panel == 3;
        label = fitsItsText ? new QLabel(this) : new ElidedLabel(Qt::ElideRight, this);
        label->setObjectName(u"StatusPanel%1"_s.arg(panel));
        label->setTextFormat(Qt::PlainText);
        const int width = widths.at(static_cast<size_t>(panel));
        if (width > 0)
            label->setFixedWidth(width);
        addWidget(label, panel == PanelCount - 1 ? 1 : 0);
    }
    panels_.back()->setMinimumWidth(120);
    activity_->setObjectName(u"StatusActivity"_s);
    activity_->setTextFormat(Qt::PlainText);
    activity_->setContentsMargins(6, 0, 0, 0);
    addPermanentWidget(activity_);
    activity_->hide();
    SetPanel(StatusPanel::ListCount, u"0 items listed"_s);
    SetPanel(StatusPanel::ExportedCount, u"0 items exported"_s);
    SetPanel(StatusPanel::ProgressLabel, u"Progress:"_s);
    mainGauge_->setObjectName(u"MainGauge");
    mainGauge_->setTextVisible(false);
    mainGauge_->setRange(0, 100);
    mainGauge_->setValue(0);
}

void StatusBarView::SetPanel(int panel, const QString& text) {
    panels_.at(static_cast<size_t>(panel))->setText(text);
}

// The gauge counts in int; a download may have more bytes than that.
void StatusBarView::SetProgressMaximum(qint64 maximum) {
    maximum_ = maximum;
    mainGauge_->setRange(0, static_cast<int>(std::clamp<qint64>(maximum, 1, gaugeSteps)));
    mainGauge_->setValue(0);
}

void StatusBarView::SetProgressPosition(qint64 position) {
    if (maximum_ > gaugeSteps)
        position = static_cast<qint64>(static_cast<double>(position) / static_cast<double>(maximum_) * gaugeSteps);
    mainGauge_->setValue(maximum_ < 1 ? 0 : static_cast<int>(std::clamp<qint64>(position, 0, mainGauge_->maximum())));
}

void StatusBarView::ShowActivity(const QString& text) {
    const bool shown = activity_->isVisibleTo(this);
    activity_->setText(text);
    activity_->setVisible(!text.isEmpty());
    // It changes each second; what stands beside it must not dance with it, so its room only grows while it is shown.
    const int wanted = std::min(activity_->sizeHint().width(), widestActivity);
    activity_->setMaximumWidth(shown ? std::max(wanted, activity_->maximumWidth()) : wanted);
}

QString StatusBarView::PanelText(int panel) const {
    return panels_.at(static_cast<size_t>(panel))->text();
}

QRect StatusBarView::PanelRect(int panel) const {
    return panels_.at(static_cast<size_t>(panel))->geometry();
}

void StatusBarView::PlaceGauge() {
    mainGauge_->setGeometry(PanelRect(PanelCount - 1));
    mainGauge_->raise();
}

void StatusBarView::resizeEvent(QResizeEvent* event) {
    QStatusBar::resizeEvent(event);
    PlaceGauge();
}

// The panel before the last one is as wide as its text, so a new text moves the last one.
bool StatusBarView::event(QEvent* event) {
    const bool handled = QStatusBar::event(event);
    if (event->type() == QEvent::LayoutRequest)
        PlaceGauge();
    return handled;
}

} // namespace Brindle
