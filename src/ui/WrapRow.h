#pragma once

#include <QLayout>
#include <QScrollArea>
#include <QWidget>

#include <vector>

namespace Brindle {

/// Controls in a row, which goes on in a further line where the window is too narrow for one. Room that is left in a
/// line goes to what can expand in it.
class WrapRow : public QLayout {
public:
    explicit WrapRow(int spacing);
    ~WrapRow() override;

    void AddSpace(int width);
    void AddStretch();

    void addItem(QLayoutItem* item) override;
    int count() const override { return static_cast<int>(items_.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return Arrange({0, 0, width, 0}, false); }
    Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
    void setGeometry(const QRect& rect) override;

private:
    int Arrange(const QRect& rect, bool place) const;
    void PlaceLine(size_t from, size_t to, const QRect& line) const;

    std::vector<QLayoutItem*> items_;
};

/// As high at least as its rows need in the width that it has: a splitter asks for heights without a width.
class PaneOfRows : public QWidget {
public:
    using QWidget::QWidget;

protected:
    bool event(QEvent* event) override;
};

/// Scrolls a pane up and down where the window has less height than the pane's rows need; it is there while the pane
/// is.
class ScrolledPane : public QScrollArea {
public:
    ScrolledPane(QWidget* pane, QWidget* parent);

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Fit();
};

} // namespace Brindle
