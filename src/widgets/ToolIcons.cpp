#include "ToolIcons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

namespace zelto {
namespace {

using Kind = ToolIcons::Kind;

constexpr double kBox = 24.0; // the drawings' own square

// Strokes in the text colour, the marks that carry the meaning in the highlight colour; a
// disabled icon in the disabled text colour alone.
struct Ink {
    QColor line;
    QColor accent;
};

Ink inkFor(QIcon::Mode mode)
{
    const QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Disabled) {
        const QColor grey = palette.color(QPalette::Disabled, QPalette::WindowText);
        return { grey, grey };
    }
    return { palette.color(QPalette::WindowText), palette.color(QPalette::Highlight) };
}

// A line from `from` to `to` with an arrow head at `to`.
void arrow(QPainter& painter, QPointF from, QPointF to, const QColor& colour)
{
    painter.setPen(QPen(colour, 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawLine(from, to);
    const QLineF line(to, from);
    const double head = 4.0;
    QLineF side(to, from);
    side.setLength(head);
    for (const double turn : { 35.0, -35.0 }) {
        QLineF wing = side;
        wing.setAngle(line.angle() + turn);
        painter.drawLine(wing);
    }
}

// A server: a tower with two slots.
void server(QPainter& painter, const QRectF& box, const Ink& ink)
{
    painter.setPen(QPen(ink.line, 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(box, 1.5, 1.5);
    const double slot = box.height() / 4;
    for (int i = 1; i <= 2; ++i)
        painter.drawLine(QPointF(box.left() + 2, box.top() + slot * i),
            QPointF(box.right() - 2, box.top() + slot * i));
}

// A screen on a foot.
void computer(QPainter& painter, const QRectF& screen, const Ink& ink)
{
    painter.setPen(QPen(ink.line, 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(screen, 1.5, 1.5);
    const double middle = screen.center().x();
    painter.drawLine(QPointF(middle, screen.bottom()), QPointF(middle, screen.bottom() + 3));
    painter.drawLine(
        QPointF(middle - 3, screen.bottom() + 3), QPointF(middle + 3, screen.bottom() + 3));
}

void draw(QPainter& painter, Kind kind, const Ink& ink)
{
    switch (kind) {
    case Kind::StandardFtp:
        computer(painter, QRectF(1.5, 5, 9, 8), ink);
        server(painter, QRectF(15, 3, 7.5, 18), ink);
        arrow(painter, QPointF(4, 19.5), QPointF(13, 19.5), ink.accent);
        break;
    case Kind::RemoteFtp:
        server(painter, QRectF(1.5, 3, 7.5, 18), ink);
        server(painter, QRectF(15, 3, 7.5, 18), ink);
        arrow(painter, QPointF(9.5, 12), QPointF(14.5, 12), ink.accent);
        break;
    case Kind::MultiplePut:
        painter.setPen(QPen(ink.line, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(1.5, 8.5, 5, 7), 1, 1);
        for (const double y : { 4.0, 12.0, 20.0 }) {
            painter.setPen(QPen(ink.line, 1.5));
            painter.drawRect(QRectF(18.5, y - 2.5, 4, 5));
            arrow(painter, QPointF(7.5, 12), QPointF(16, y), ink.accent);
        }
        break;
    case Kind::SendParallel:
        for (const double y : { 5.0, 12.0, 19.0 })
            arrow(painter, QPointF(3, y), QPointF(21, y), ink.accent);
        painter.setPen(QPen(ink.line, 1.5));
        painter.drawLine(QPointF(1.5, 2.5), QPointF(1.5, 21.5));
        break;
    case Kind::SendSerial:
        painter.setPen(QPen(ink.line, 1.5));
        painter.setBrush(Qt::NoBrush);
        for (const double x : { 1.5, 9.5, 17.5 })
            painter.drawRect(QRectF(x, 9, 5, 6));
        arrow(painter, QPointF(6.5, 12), QPointF(9, 12), ink.accent);
        arrow(painter, QPointF(14.5, 12), QPointF(17, 12), ink.accent);
        arrow(painter, QPointF(4, 20), QPointF(20, 20), ink.line);
        break;
    case Kind::Statistics:
        painter.setPen(QPen(ink.line, 1.5));
        painter.drawLine(QPointF(2, 21.5), QPointF(22, 21.5));
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink.accent);
        painter.drawRect(QRectF(4, 13, 4, 7));
        painter.drawRect(QRectF(10, 5, 4, 15));
        painter.drawRect(QRectF(16, 9, 4, 11));
        break;
    }
}

// Paints its drawing at the size and scale asked, so no pixmap is ever scaled up.
class PaintedEngine final : public QIconEngine {
public:
    explicit PaintedEngine(Kind kind) : kind_(kind) { }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const double side = std::min(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(
            rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
        painter->scale(side / kBox, side / kBox);
        draw(*painter, kind_, inkFor(mode));
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1.0);
    }

    // `size` is in device pixels already; the pixmap carries the scale for its painter.
    QPixmap scaledPixmap(
        const QSize& size, QIcon::Mode mode, QIcon::State state, qreal scale) override
    {
        QPixmap pixmap(size);
        pixmap.setDevicePixelRatio(scale);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), (QSizeF(size) / scale).toSize()), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new PaintedEngine(kind_); }
    QString key() const override { return QStringLiteral("zelto-painted"); }

private:
    Kind kind_;
};

} // namespace

QIcon ToolIcons::icon(Kind kind)
{
    return QIcon(new PaintedEngine(kind));
}

} // namespace zelto
