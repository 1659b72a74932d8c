#include "StoredPlacement.h"

#include "settings/SettingsStore.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace zelto {
namespace {

using namespace settings::geometry;

constexpr int kAbsent = -1;

QString key(const char* name)
{
    return QString::fromLatin1(name);
}

} // namespace

StoredPlacement::StoredPlacement(const QString& name, QWidget& window)
    : QObject(&window)
    , section_(QString::fromLatin1(kSplitterSectionPattern).arg(name))
    , window_(window)
{
    restore();
    window.installEventFilter(this);
}

bool StoredPlacement::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == &window_ && event->type() == QEvent::Hide)
        save();
    return false;
}

void StoredPlacement::restore()
{
    const auto read
        = [this](const char* name) { return SettingsStore::getInt(section_, key(name), kAbsent); };
    const int width = read(kWidth);
    const int height = read(kHeight);
    if (width <= 0 || height <= 0) {
        // The first opening: the size asked for, less where the screen is smaller (large
        // scale factors).
        const QWidget* parent = window_.parentWidget();
        const QScreen* screen = parent ? parent->screen() : QGuiApplication::primaryScreen();
        if (screen)
            window_.resize(window_.size().boundedTo(screen->availableGeometry().size() * 0.9));
        return;
    }
    window_.resize(width, height);
    QRect place(QPoint(read(kX), read(kY)), window_.size());
    const QScreen* screen = QGuiApplication::screenAt(place.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    // A screen that has gone, or a smaller one: the window is brought back onto what is there.
    const QRect available = screen->availableGeometry();
    place.moveRight(std::min(place.right(), available.right()));
    place.moveBottom(std::min(place.bottom(), available.bottom()));
    place.moveLeft(std::max(place.left(), available.left()));
    place.moveTop(std::max(place.top(), available.top()));
    window_.move(place.topLeft());
}

void StoredPlacement::save() const
{
    SettingsStore::writeInt(section_, key(kX), window_.x());
    SettingsStore::writeInt(section_, key(kY), window_.y());
    SettingsStore::writeInt(section_, key(kWidth), window_.width());
    SettingsStore::writeInt(section_, key(kHeight), window_.height());
}

} // namespace zelto
