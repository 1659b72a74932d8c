#include "StoredPlacement.h"

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace zelto {
namespace {

using namespace settings::geometry;

constexpr int kUnset = -1;

} // namespace

StoredPlacement::StoredPlacement(QString section) : section_(std::move(section))
{
}

void StoredPlacement::restore(QWidget& window, const QWidget* over, QSize readable) const
{
    const auto read = [&](const char* key) {
        return SettingsStore::getInt(section_, QLatin1StringView(key), kUnset);
    };
    const QSize size(read(kWidth), read(kHeight));
    const QPoint place(read(kX), read(kY));
    // A place on a screen that is gone would leave the window where nobody sees it.
    if (size.width() > 0 && size.height() > 0 && QGuiApplication::screenAt(place)) {
        window.resize(size);
        window.move(place);
        return;
    }
    const QScreen* screen = over ? over->screen() : window.screen();
    const QRect area = screen ? screen->availableGeometry() : QRect(QPoint(), readable);
    window.resize(readable.boundedTo(area.size()));
    const QRect centreOn = over ? over->frameGeometry() : area;
    const QPoint centred = centreOn.center() - QPoint(window.width() / 2, window.height() / 2);
    // Over a small frame near the screen's edge, centring alone would push it off the screen.
    window.move(
        std::clamp(centred.x(), area.left(), std::max(area.left(), area.right() - window.width())),
        std::clamp(centred.y(), area.top(), std::max(area.top(), area.bottom() - window.height())));
}

void StoredPlacement::save(const QWidget& window) const
{
    if (!window.isVisible()
        || (window.windowState()
            & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen)))
        return;
    const auto write = [&](const char* key, int value) {
        SettingsStore::writeInt(section_, QLatin1StringView(key), value);
    };
    write(kWidth, window.width());
    write(kHeight, window.height());
    write(kX, window.x());
    write(kY, window.y());
}

} // namespace zelto
