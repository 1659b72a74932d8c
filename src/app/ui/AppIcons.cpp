#include "AppIcons.h"

#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace zelto {
namespace {

constexpr int kSizes[] = { 16, 22, 24, 32, 48, 64 };
constexpr double kMarkSize = 64.0; // the SVG's view box

bool svgReadable()
{
    return QImageReader::supportedImageFormats().contains("svg");
}

// The shapes of res/zelto.svg: a rounded square, a "Z" and a dot.
void paintMark(QPainter& painter, int size)
{
    painter.save();
    painter.scale(size / kMarkSize, size / kMarkSize);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x1f, 0x6f, 0x8b));
    painter.drawRoundedRect(QRectF(4, 4, 56, 56), 12, 12);
    QPainterPath zed;
    zed.addPolygon(QPolygonF({ { 18, 20 }, { 46, 20 }, { 46, 26 }, { 26, 40 }, { 46, 40 },
        { 46, 46 }, { 18, 46 }, { 18, 40 }, { 38, 26 }, { 18, 26 } }));
    zed.closeSubpath();
    painter.setBrush(Qt::white);
    painter.drawPath(zed);
    painter.setBrush(QColor(0xf2, 0xa5, 0x41));
    painter.drawEllipse(QPointF(48, 16), 5, 5);
    painter.restore();
}

QPixmap markPixmap(int size)
{
    if (svgReadable())
        return QIcon(QStringLiteral(":/zelto.svg")).pixmap(size);
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    paintMark(painter, size);
    return pixmap;
}

// A disc in the lower right corner, ringed in white so that it stands out on any panel.
void paintBadge(QPainter& painter, int size, TrayState state)
{
    const double diameter = size * 0.56;
    const QRectF disc(size - diameter, size - diameter, diameter, diameter);
    painter.setPen(QPen(Qt::white, std::max(1.0, size / 20.0)));
    painter.setBrush(
        state == TrayState::Sending ? QColor(0x2e, 0x9d, 0x48) : QColor(0xe0, 0x8e, 0x0b));
    painter.drawEllipse(disc.adjusted(0.5, 0.5, -0.5, -0.5));
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    const QPointF centre = disc.center();
    const double unit = diameter / 8;
    if (state == TrayState::Sending) {
        // An arrow pointing up.
        painter.drawPolygon(QPolygonF({ centre + QPointF(0, -3 * unit),
            centre + QPointF(2.5 * unit, 0), centre + QPointF(1 * unit, 0),
            centre + QPointF(1 * unit, 2.8 * unit), centre + QPointF(-1 * unit, 2.8 * unit),
            centre + QPointF(-1 * unit, 0), centre + QPointF(-2.5 * unit, 0) }));
        return;
    }
    // Three dots: work under way.
    for (int dot = -1; dot <= 1; ++dot)
        painter.drawEllipse(centre + QPointF(dot * 2.4 * unit, 0), unit * 0.9, unit * 0.9);
}

} // namespace

QIcon AppIcons::application()
{
    return tray(TrayState::Idle);
}

QIcon AppIcons::tray(TrayState state)
{
    QIcon icon;
    for (const int size : kSizes) {
        QPixmap pixmap = markPixmap(size);
        if (state != TrayState::Idle) {
            QPainter painter(&pixmap);
            painter.setRenderHint(QPainter::Antialiasing);
            paintBadge(painter, size, state);
        }
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace zelto
