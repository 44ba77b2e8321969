#pragma once

#include <QLabel>

namespace Brindle {

/// A text in one line, with dots where it does not fit; the whole of it is then the tooltip. A text that comes and goes
/// does not make the window wider.
class ElidedLabel : public QLabel {
public:
    /// `elide`: where the dots stand.
    ElidedLabel(Qt::TextElideMode elide, QWidget* parent) : QLabel(parent), elide_(elide) {}
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::TextElideMode elide_;
};

} // namespace Brindle
