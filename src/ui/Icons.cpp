#include "ui/Icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>

namespace Brindle {

namespace {

const QColor go(0x1F, 0x8A, 0x4C);
const QColor halt(0xC0, 0x39, 0x2B);
const QColor brand(0x1F, 0x5F, 0x8B);

QPolygonF Points(std::initializer_list<QPointF> points) {
    return QPolygonF(QList<QPointF>(points));
}

void Fill(QPainter& p, const QPolygonF& shape, const QColor& colour) {
    p.save();
    p.setBrush(colour);
    p.setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.drawPolygon(shape);
    p.restore();
}

void Trash(QPainter& p) {
    p.drawLine(QPointF(5, 7), QPointF(19, 7));
    p.drawPolyline(Points({{9.5, 7}, {9.5, 4.5}, {14.5, 4.5}, {14.5, 7}}));
    p.drawPolyline(Points({{6.5, 7}, {7.3, 19.5}, {16.7, 19.5}, {17.5, 7}}));
}

void Tray(QPainter& p) {
    p.drawPolyline(Points({{5, 14.5}, {5, 19.5}, {19, 19.5}, {19, 14.5}}));
}

void Frame(QPainter& p, Qt::PenStyle style) {
    QPen pen = p.pen();
    pen.setStyle(style);
    p.setPen(pen);
    p.drawRoundedRect(QRectF(5, 5, 14, 14), 2, 2);
    pen.setStyle(Qt::SolidLine);
    p.setPen(pen);
}

void DrawProgram(QPainter& p) {
    p.setPen(Qt::NoPen);
    p.setBrush(brand);
    p.drawRoundedRect(QRectF(1, 1, 22, 22), 5, 5);
    p.setPen(QPen(Qt::white, 2.2, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(6.5, 8), QPointF(13, 8));
    p.drawLine(QPointF(6.5, 12), QPointF(10.5, 12));
    p.drawLine(QPointF(6.5, 16), QPointF(10, 16));
    p.drawPolyline(Points({{12.5, 14.5}, {15, 17}, {18.5, 11}}));
}

void DrawRefresh(QPainter& p) {
    p.drawArc(QRectF(5.5, 5.5, 13, 13), 50 * 16, 280 * 16);
    p.drawPolyline(Points({{17, 3.5}, {16.8, 7.4}, {12.9, 7.4}}));
}

void DrawHome(QPainter& p) {
    p.drawPolyline(Points({{4, 12}, {12, 5}, {20, 12}}));
    p.drawPolyline(Points({{6.5, 10.5}, {6.5, 19}, {17.5, 19}, {17.5, 10.5}}));
    p.drawPolyline(Points({{10.3, 19}, {10.3, 14}, {13.7, 14}, {13.7, 19}}));
}

void DrawSettings(QPainter& p) {
    for (const auto& [y, x] : {std::pair{7.0, 15.0}, {12.0, 9.0}, {17.0, 14.0}}) {
        p.drawLine(QPointF(4.5, y), QPointF(x - 2.2, y));
        p.drawLine(QPointF(x + 2.2, y), QPointF(19.5, y));
        p.drawEllipse(QPointF(x, y), 2.2, 2.2);
    }
}

void DrawMap(QPainter& p) {
    QPainterPath pin(QPointF(12, 20.5));
    pin.cubicTo(9, 16, 6.5, 13, 6.5, 9.5);
    pin.cubicTo(6.5, 2.2, 17.5, 2.2, 17.5, 9.5);
    pin.cubicTo(17.5, 13, 15, 16, 12, 20.5);
    p.drawPath(pin);
    p.drawEllipse(QPointF(12, 9.5), 2, 2);
}

void DrawWebsite(QPainter& p) {
    p.drawEllipse(QPointF(12, 12), 7.5, 7.5);
    p.drawEllipse(QPointF(12, 12), 3.3, 7.5);
    p.drawLine(QPointF(4.5, 12), QPointF(19.5, 12));
}

void DrawDetails(QPainter& p) {
    p.drawPolygon(Points({{6.5, 4}, {14, 4}, {17.5, 7.5}, {17.5, 20}, {6.5, 20}}));
    for (const double y : {10.0, 13.0, 16.0})
        p.drawLine(QPointF(9.3, y), QPointF(14.7, y));
}

void DrawArrow(QPainter& p, double top, double tip, double wing) {
    p.drawLine(QPointF(12, top), QPointF(12, tip));
    const double back = tip > top ? tip - wing : tip + wing;
    p.drawPolyline(Points({{12 - wing, back}, {12, tip}, {12 + wing, back}}));
}

void Draw(Glyph glyph, QPainter& p) {
    switch (glyph) {
    case Glyph::Program:
        return DrawProgram(p);
    case Glyph::Back:
        p.drawLine(QPointF(5, 12), QPointF(19, 12));
        p.drawPolyline(Points({{11, 6}, {5, 12}, {11, 18}}));
        return;
    case Glyph::Forward:
        p.drawLine(QPointF(5, 12), QPointF(19, 12));
        p.drawPolyline(Points({{13, 6}, {19, 12}, {13, 18}}));
        return;
    case Glyph::StopLoading:
        p.drawLine(QPointF(6.5, 6.5), QPointF(17.5, 17.5));
        p.drawLine(QPointF(17.5, 6.5), QPointF(6.5, 17.5));
        return;
    case Glyph::Refresh:
        return DrawRefresh(p);
    case Glyph::Home:
        return DrawHome(p);
    case Glyph::Start:
        return Fill(p, Points({{7.5, 5.5}, {18.5, 12}, {7.5, 18.5}}), go);
    case Glyph::Stop:
        return Fill(p, Points({{7, 7}, {17, 7}, {17, 17}, {7, 17}}), halt);
    case Glyph::Settings:
        return DrawSettings(p);
    case Glyph::Updates:
        Tray(p);
        return DrawArrow(p, 4, 14.5, 4);
    case Glyph::SelectAll:
        Frame(p, Qt::SolidLine);
        p.drawPolyline(Points({{8.5, 12.2}, {11, 14.8}, {15.5, 9.2}}));
        return;
    case Glyph::ClearSelection:
        return Frame(p, Qt::SolidLine);
    case Glyph::Delete:
        return Trash(p);
    case Glyph::DeleteAll:
        Trash(p);
        p.drawLine(QPointF(10.3, 10.3), QPointF(10.6, 16.5));
        p.drawLine(QPointF(13.7, 10.3), QPointF(13.4, 16.5));
        return;
    case Glyph::Website:
        return DrawWebsite(p);
    case Glyph::Map:
        return DrawMap(p);
    case Glyph::Details:
        return DrawDetails(p);
    case Glyph::Export:
        Tray(p);
        return DrawArrow(p, 15, 4.5, 4);
    }
}

class GlyphEngine : public QIconEngine {
public:
    explicit GlyphEngine(Glyph glyph, bool faded = false) : glyph_(glyph), faded_(faded) {}

    // Glyphs are drawn on a square of 24 units.
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const double size = std::min(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(rect).center() - QPointF(size / 2, size / 2));
        painter->scale(size / 24, size / 24);
        if (faded_ || mode == QIcon::Disabled)
            painter->setOpacity(0.35);
        const QColor ink = QGuiApplication::palette().color(QPalette::Active, QPalette::ButtonText);
        painter->setPen(QPen(ink, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        Draw(glyph_, *painter);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }

    QIconEngine* clone() const override { return new GlyphEngine(*this); }

private:
    Glyph glyph_;
    bool faded_;
};

} // namespace

QIcon IconOf(Glyph glyph) {
    return QIcon(new GlyphEngine(glyph));
}

QIcon FadedIconOf(Glyph glyph) {
    return QIcon(new GlyphEngine(glyph, true));
}

} // namespace Brindle
