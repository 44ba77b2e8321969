#pragma once

#include "core/StatusView.h"

#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>

#include <array>

namespace Brindle {

/// The status bar of the window: panels 0 to 4, and the progress bar `MainGauge` over the last one.
class StatusBarView : public QStatusBar, public StatusView {
    Q_OBJECT

public:
    static constexpr int PanelCount = 5;

    explicit StatusBarView(QWidget* parent = nullptr);

    void SetPanel(int panel, const QString& text) override;
    void SetProgressMaximum(qint64 maximum) override;
    void SetProgressPosition(qint64 position) override;

    /// What a panel shows in full, whether or not it fits.
    QString PanelText(int panel) const;
    /// Where a panel lies in the status bar.
    QRect PanelRect(int panel) const;
    /// What goes on, behind the panels; an empty text takes no room.
    void ShowActivity(const QString& text);
    QString Activity() const { return activity_->text(); }
    /// What a screen reader calls the progress bar.
    void NameGauge(const QString& name) { mainGauge_->setAccessibleName(name); }
    /// Puts the progress bar over the last panel.
    void PlaceGauge();

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    std::array<QLabel*, PanelCount> panels_{};
    QLabel* activity_;
    QProgressBar* mainGauge_;
    qint64 maximum_ = 0;
};

} // namespace Brindle
