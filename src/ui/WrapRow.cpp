#include "ui/WrapRow.h"

#include <QEvent>
#include <QScreen>
#include <QScrollBar>
#include <QSpacerItem>

#include <algorithm>

namespace Brindle {

namespace {

bool Expands(const QLayoutItem* item) {
    return item->expandingDirections().testFlag(Qt::Horizontal);
}

// What an item takes at least.
int WidthOf(const QLayoutItem* item) {
    return Expands(item) ? item->minimumSize().width() : item->sizeHint().width();
}

} // namespace

WrapRow::WrapRow(int spacing) {
    setSpacing(spacing);
}

WrapRow::~WrapRow() {
    for (QLayoutItem* const item : items_)
        delete item;
}

void WrapRow::AddSpace(int width) {
    addItem(new QSpacerItem(width, 0, QSizePolicy::Fixed, QSizePolicy::Minimum));
}

void WrapRow::AddStretch() {
    addItem(new QSpacerItem(0, 0, QSizePolicy::Expanding, QSizePolicy::Minimum));
}

void WrapRow::addItem(QLayoutItem* item) {
    items_.push_back(item);
    invalidate();
}

QLayoutItem* WrapRow::itemAt(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<size_t>(index)] : nullptr;
}

QLayoutItem* WrapRow::takeAt(int index) {
    QLayoutItem* const item = itemAt(index);
    if (item)
        items_.erase(items_.begin() + index);
    return item;
}

QSize WrapRow::sizeHint() const {
    QSize size(spacing() * std::max(0, count() - 1), 0);
    for (const QLayoutItem* const item : items_)
        size = {size.width() + item->sizeHint().width(), std::max(size.height(), item->sizeHint().height())};
    return size.grownBy(contentsMargins());
}

QSize WrapRow::minimumSize() const {
    QSize size;
    for (const QLayoutItem* const item : items_)
        size = size.expandedTo({WidthOf(item), item->minimumSize().height()});
    return size.grownBy(contentsMargins());
}

void WrapRow::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    Arrange(rect, true);
}

int WrapRow::Arrange(const QRect& rect, bool place) const {
    const QRect room = rect.marginsRemoved(contentsMargins());
    int top = room.top();
    for (size_t from = 0; from < items_.size();) {
        size_t to = from;
        int width = 0;
        int height = 0;
        for (; to < items_.size(); ++to) {
            const int next = WidthOf(items_[to]) + (to > from ? spacing() : 0);
            if (to > from && width + next > room.width())
                break;
            width += next;
            height = std::max(height, items_[to]->sizeHint().height());
        }
        if (place)
            PlaceLine(from, to, {room.left(), top, room.width(), height});
        top += height + (to < items_.size() ? spacing() : 0);
        from = to;
    }
    return top - rect.top() + contentsMargins().bottom();
}

void WrapRow::PlaceLine(size_t from, size_t to, const QRect& line) const {
    int left = line.width() - spacing() * static_cast<int>(to - from - 1);
    int expanding = 0;
    for (size_t i = from; i < to; ++i) {
        left -= WidthOf(items_[i]);
        expanding += Expands(items_[i]) ? 1 : 0;
    }
    int x = line.left();
    for (size_t i = from; i < to; ++i) {
        const QSize hint = items_[i]->sizeHint();
        int width = WidthOf(items_[i]);
        if (expanding > 0 && Expands(items_[i])) {
            const int more = std::max(0, left) / expanding--;
            width += more;
            left -= more;
        }
        items_[i]->setGeometry({x, line.top() + (line.height() - hint.height()) / 2, width, hint.height()});
        x += width + spacing();
    }
}

namespace {

// What a layout needs at least in a width.
int HeightFor(const QLayout& layout, int width) {
    return layout.hasHeightForWidth() ? layout.minimumHeightForWidth(width) : layout.minimumSize().height();
}

} // namespace

bool PaneOfRows::event(QEvent* event) {
    const bool done = QWidget::event(event);
    if (layout() && (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest))
        setMinimumHeight(HeightFor(*layout(), width()));
    return done;
}

ScrolledPane::ScrolledPane(QWidget* pane, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    const bool visible = !pane->isHidden();
    setWidget(pane); // shows it
    pane->setVisible(visible);
    setVisible(visible);
    setMinimumWidth(pane->minimumWidth());
    pane->installEventFilter(this);
}

// As high as the pane needs where the screen has that room; on a smaller one the pane is scrolled.
void ScrolledPane::Fit() {
    constexpr int others = 290;                // what the window has above and below
    const QSize whole = maximumViewportSize(); // without a scroll bar
    const auto neededFor = [this](int width) { return HeightFor(*widget()->layout(), width); };
    const int needed = neededFor(whole.width());
    setMinimumHeight(std::min(needed, std::max(120, screen()->availableGeometry().height() - others)));
    const int narrow = whole.width() - verticalScrollBar()->sizeHint().width();
    widget()->resize(whole.height() >= needed ? whole : QSize(narrow, neededFor(narrow)));
}

void ScrolledPane::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    Fit();
}

bool ScrolledPane::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget() && (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent))
        setVisible(event->type() == QEvent::ShowToParent);
    const bool done = QScrollArea::eventFilter(watched, event);
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        QMetaObject::invokeMethod(
            this, [this] { Fit(); }, Qt::QueuedConnection);
    return done;
}

} // namespace Brindle
