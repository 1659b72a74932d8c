#include "TransferAnimation.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <cmath>
#include <numbers>

namespace zelto {
namespace {

constexpr int kEndIcon = 32;
constexpr int kSheetIcon = 16;
// How far the sheet rises above the line between the two ends, mid-flight.
constexpr int kArc = 14;

QIcon themed(const char* name, QStyle::StandardPixmap fallback, const QStyle* style)
{
    return QIcon::fromTheme(QLatin1String(name), style->standardIcon(fallback));
}

} // namespace

TransferAnimation::TransferAnimation(TransferMode mode, QWidget* parent) : QWidget(parent)
{
    const QIcon computer = themed("computer", QStyle::SP_ComputerIcon, style());
    const QIcon server = themed("network-server", QStyle::SP_DriveNetIcon, style());
    source_
        = mode == TransferMode::Put || mode == TransferMode::DistributionPut ? computer : server;
    destination_ = mode == TransferMode::Get ? computer : server;
    sheet_ = themed("text-x-generic", QStyle::SP_FileIcon, style());
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    frames_.setInterval(kFrame);
    connect(&frames_, &QTimer::timeout, this, qOverload<>(&QWidget::update));
}

QSize TransferAnimation::sizeHint() const
{
    return { kEndIcon * 2 + kSheetIcon * 6, kEndIcon + kArc };
}

void TransferAnimation::showEvent(QShowEvent* event)
{
    clock_.start();
    frames_.start();
    QWidget::showEvent(event);
}

void TransferAnimation::hideEvent(QHideEvent* event)
{
    frames_.stop();
    QWidget::hideEvent(event);
}

void TransferAnimation::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        scene_ = QPixmap();
    QWidget::changeEvent(event);
}

QPixmap TransferAnimation::scene() const
{
    const qreal ratio = devicePixelRatioF();
    if (!scene_.isNull() && scene_.deviceIndependentSize() == QSizeF(size())
        && scene_.devicePixelRatio() == ratio)
        return scene_;
    scene_ = QPixmap(size() * ratio);
    scene_.setDevicePixelRatio(ratio);
    scene_.fill(Qt::transparent);
    QPainter painter(&scene_);
    painter.setRenderHint(QPainter::Antialiasing);
    const int top = height() - kEndIcon;
    source_.paint(&painter, QRect(0, top, kEndIcon, kEndIcon));
    destination_.paint(&painter, QRect(width() - kEndIcon, top, kEndIcon, kEndIcon));
    // The path of the flight, faintly.
    const QPointF start(kEndIcon + kSheetIcon / 2.0, top + kEndIcon / 2.0);
    const QPointF end(width() - kEndIcon - kSheetIcon / 2.0, start.y());
    QPainterPath flight(start);
    flight.quadTo(QPointF((start.x() + end.x()) / 2, start.y() - 2 * kArc), end);
    painter.setPen(QPen(palette().color(QPalette::Mid), 1, Qt::DotLine));
    painter.drawPath(flight);
    return scene_;
}

void TransferAnimation::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.drawPixmap(0, 0, scene());
    const auto flightMs = static_cast<double>(kFlight.count());
    const double t = std::fmod(static_cast<double>(clock_.elapsed()), flightMs) / flightMs;
    const double startX = kEndIcon;
    const double endX = width() - kEndIcon - kSheetIcon;
    const double middle = height() - kEndIcon / 2.0;
    const double x = startX + (endX - startX) * t;
    const double y = middle - kArc * std::sin(std::numbers::pi * t) - kSheetIcon / 2.0;
    sheet_.paint(&painter, QRect(int(x), int(y), kSheetIcon, kSheetIcon));
}

} // namespace zelto
