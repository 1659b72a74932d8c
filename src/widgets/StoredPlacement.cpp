#include "StoredPlacement.h"

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace zelto {
namespace {

using namespace settings::geometry;

constexpr int kUnset = -1;

int read(const QString& section, const char* key)
{
    return SettingsStore::getInt(section, QLatin1StringView(key), kUnset);
}

// Saves its window's placement after each move and resize; the window owns it.
class Keeper final : public QObject {
public:
    Keeper(QWidget& window, QString section) : QObject(&window), section_(std::move(section)) { }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
            StoredPlacement::save(*static_cast<QWidget*>(watched), section_);
        return false;
    }

private:
    QString section_;
};

} // namespace

void StoredPlacement::restore(
    QWidget& window, const QString& section, QSize readable, const QWidget* anchor)
{
    const int width = read(section, kWidth);
    const int height = read(section, kHeight);
    const QPoint place(read(section, kX), read(section, kY));
    // A place on a screen that is gone would leave the window where nobody sees it.
    if (width > 0 && height > 0 && QGuiApplication::screenAt(place)) {
        window.resize(width, height);
        window.move(place);
        return;
    }
    const QScreen* screen = anchor ? anchor->screen() : QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(QPoint(), readable);
    window.resize(readable.boundedTo(available.size()));
    const QRect around = anchor && anchor->isVisible() ? anchor->frameGeometry() : available;
    QRect placed(QPoint(), window.size());
    placed.moveCenter(around.center());
    // Kept on the screen when the anchor sits near its edge.
    placed.moveLeft(std::clamp(placed.left(), available.left(),
        std::max(available.left(), available.right() - placed.width())));
    placed.moveTop(std::clamp(placed.top(), available.top(),
        std::max(available.top(), available.bottom() - placed.height())));
    window.move(placed.topLeft());
}

void StoredPlacement::save(const QWidget& window, const QString& section)
{
    if (!window.isVisible()
        || (window.windowState()
            & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen)))
        return;
    SettingsStore::writeInt(section, QLatin1StringView(kWidth), window.width());
    SettingsStore::writeInt(section, QLatin1StringView(kHeight), window.height());
    SettingsStore::writeInt(section, QLatin1StringView(kX), window.x());
    SettingsStore::writeInt(section, QLatin1StringView(kY), window.y());
}

void StoredPlacement::keep(QWidget& window, const QString& section)
{
    window.installEventFilter(new Keeper(window, section));
}

} // namespace zelto
