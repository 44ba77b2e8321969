#pragma once

#include <QRectF>
#include <QString>
#include <QWidget>

#include <vector>

namespace Brindle {

/// Frames and lights above a page that is shown, never in it. While somebody points, it takes the mouse, so that the
/// page's links and buttons do nothing; the wheel still scrolls the page.
class PageOverlay : public QWidget {
    Q_OBJECT

public:
    /// A place with what it is: a field's caption, shown beside it.
    struct Mark {
        QRectF Place;
        QString Caption;

        bool operator==(const Mark&) const = default;
    };

    /// Lies over the whole of `view` as long as both live.
    explicit PageOverlay(QWidget* view);

    void SetPointing(bool pointing);
    void ShowRecords(std::vector<QRectF> places);
    void ShowMarks(std::vector<Mark> marks);
    /// The element under the mouse and its likes.
    void ShowLikes(std::vector<QRectF> places);
    void Clear();

    const std::vector<QRectF>& Records() const { return records_; }
    const std::vector<Mark>& Marks() const { return marks_; }
    const std::vector<QRectF>& Likes() const { return likes_; }
    /// Where a click takes a mark away, at the end of its label.
    QRectF CrossOf(const Mark& mark) const;

Q_SIGNALS:
    /// In the view's coordinates, while pointing.
    void Hovered(const QPointF& place);
    void Clicked(const QPointF& place);
    /// The cross of a mark was clicked, which takes the mark away.
    void MarkClosed(const QString& caption);
    void MouseGone();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    QFont LabelFont() const;
    QRectF LabelOf(const Mark& mark) const;

    QWidget* view_;
    std::vector<QRectF> records_;
    std::vector<Mark> marks_;
    std::vector<QRectF> likes_;
    bool forwarding_ = false;
};

} // namespace Brindle
