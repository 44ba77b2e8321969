#include "ui/ElidedLabel.h"

#include <QPainter>

namespace Brindle {

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), elide_, width());
    setToolTip(shown == text() ? QString() : text());
    painter.drawText(rect(), Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine, shown);
}

} // namespace Brindle
