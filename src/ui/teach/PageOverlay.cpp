#include "ui/teach/PageOverlay.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

namespace Brindle {

namespace {

const QColor recordColour(0x2f, 0x6f, 0xdb);
const QColor likeColour(0xf2, 0xa9, 0x00);
const QColor markColour(0x1e, 0x8a, 0x4c);

QColor Faint(QColor colour, int alpha) {
    colour.setAlpha(alpha);
    return colour;
}

QString LabelText(const QString& caption) {
    return caption + u" \u2715";
}

} // namespace

PageOverlay::PageOverlay(QWidget* view) : QWidget(view), view_(view) {
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_TranslucentBackground);
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    SetPointing(false);
    view->installEventFilter(this);
    setGeometry(view->rect());
    raise();
}

void PageOverlay::SetPointing(bool pointing) {
    setAttribute(Qt::WA_TransparentForMouseEvents, !pointing);
    if (pointing)
        setCursor(Qt::PointingHandCursor);
    else
        unsetCursor();
}

void PageOverlay::ShowRecords(std::vector<QRectF> places) {
    if (records_ != places) {
        records_ = std::move(places);
        update();
    }
}

void PageOverlay::ShowMarks(std::vector<Mark> marks) {
    if (marks_ != marks) {
        marks_ = std::move(marks);
        update();
    }
}

void PageOverlay::ShowLikes(std::vector<QRectF> places) {
    if (likes_ != places) {
        likes_ = std::move(places);
        update();
    }
}

void PageOverlay::Clear() {
    records_.clear();
    marks_.clear();
    likes_.clear();
    update();
}

bool PageOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == view_) {
        if (event->type() == QEvent::Resize)
            setGeometry(view_->rect());
        else if (event->type() == QEvent::ChildAdded)
            raise(); // the engine brings a view of its own when its process changes
    }
    return QWidget::eventFilter(watched, event);
}

void PageOverlay::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF seen(rect());
    painter.setBrush(Faint(recordColour, 10));
    painter.setPen(QPen(Faint(recordColour, 170), 1.5, Qt::DashLine));
    for (const QRectF& place : records_)
        if (seen.intersects(place))
            painter.drawRoundedRect(place.adjusted(-2, -2, 2, 2), 4, 4);
    painter.setPen(QPen(markColour, 1.5));
    painter.setBrush(Faint(markColour, 36));
    for (const Mark& mark : marks_)
        if (seen.intersects(mark.Place))
            painter.drawRoundedRect(mark.Place.adjusted(-1, -1, 1, 1), 3, 3);
    painter.setPen(QPen(likeColour, 2));
    painter.setBrush(Faint(likeColour, 60));
    for (const QRectF& place : likes_)
        if (seen.intersects(place))
            painter.drawRoundedRect(place.adjusted(-2, -2, 2, 2), 3, 3);
    painter.setFont(LabelFont());
    for (const Mark& mark : marks_) {
        if (mark.Caption.isEmpty() || !seen.intersects(mark.Place))
            continue;
        const QRectF label = LabelOf(mark);
        painter.setPen(Qt::NoPen);
        painter.setBrush(markColour);
        painter.drawRoundedRect(label, 3, 3);
        painter.setPen(Qt::white);
        painter.drawText(label, Qt::AlignCenter, LabelText(mark.Caption));
    }
}

QFont PageOverlay::LabelFont() const {
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.8);
    return small;
}

// The cross at the end of a label; through the rest of it the page is pointed at.
QRectF PageOverlay::CrossOf(const Mark& mark) const {
    const QRectF label = LabelOf(mark);
    return label.adjusted(label.width() - label.height() - 2, 0, 0, 0);
}

// What a mark is stands at its right end, where it hides least.
QRectF PageOverlay::LabelOf(const Mark& mark) const {
    const QFontMetricsF metrics(LabelFont());
    const auto widthOf = [&](const Mark& each) { return metrics.horizontalAdvance(LabelText(each.Caption)) + 8; };
    // Behind those of other fields that the same element shows.
    double left = mark.Place.right() + 4;
    for (const Mark& other : marks_) {
        if (other == mark)
            break;
        const QPointF apart = other.Place.topRight() - mark.Place.topRight();
        if (!other.Caption.isEmpty() && apart.manhattanLength() < 4)
            left += widthOf(other) + 3;
    }
    QRectF label(left, mark.Place.top(), widthOf(mark), metrics.height() + 2);
    // Above it where it would lie on another mark.
    if (std::any_of(marks_.begin(), marks_.end(), [&](const Mark& other) { return other.Place.intersects(label); }))
        label.moveBottomRight(mark.Place.topRight() + QPointF(0, 3));
    label.moveLeft(std::clamp(label.left(), 0.0, std::max(0.0, width() - label.width())));
    return label;
}

void PageOverlay::mouseMoveEvent(QMouseEvent* event) {
    Q_EMIT Hovered(event->position());
}

void PageOverlay::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

void PageOverlay::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() != Qt::LeftButton || !rect().contains(event->position().toPoint()))
        return;
    for (const Mark& mark : marks_)
        if (!mark.Caption.isEmpty() && CrossOf(mark).contains(event->position())) {
            Q_EMIT MarkClosed(QString(mark.Caption));
            return;
        }
    Q_EMIT Clicked(event->position());
}

void PageOverlay::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
}

void PageOverlay::wheelEvent(QWheelEvent* event) {
    QWidget* const page = view_->focusProxy();
    event->accept();
    if (!page || forwarding_)
        return;
    forwarding_ = true;
    const QPointF place = page->mapFrom(view_, mapToParent(event->position())); // both lie in the view
    QWheelEvent copy(place, event->globalPosition(), event->pixelDelta(), event->angleDelta(), event->buttons(),
                     event->modifiers(), event->phase(), event->inverted());
    QCoreApplication::sendEvent(page, &copy);
    forwarding_ = false;
}

void PageOverlay::leaveEvent(QEvent*) {
    Q_EMIT MouseGone();
}

void PageOverlay::contextMenuEvent(QContextMenuEvent* event) {
    event->accept(); // the page's own menu has links to follow
}

} // namespace Brindle
