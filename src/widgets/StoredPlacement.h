#pragma once

#include <QSize>
#include <QString>

class QWidget;

namespace zelto {

// A top-level window's place and size, kept in one settings section under "Width", "Height",
// "x" and "y" (for instance "Dimensions\Profile\Mainframe").
class StoredPlacement final {
public:
    StoredPlacement() = delete;

    // Puts `window` where it was last. With nothing stored it opens at `readable` size (never
    // larger than the screen) centred on `anchor`, or on the screen without one: the old
    // 400 x 400 at 20, 20 hides most of a screen's panes.
    static void restore(
        QWidget& window, const QString& section, QSize readable, const QWidget* anchor);
    // Writes the window's place and size; a hidden, minimised or maximised window is skipped,
    // since that size is not the one to come back to.
    static void save(const QWidget& window, const QString& section);
    // From now on writes the window's place and size on every move and resize, so that a window
    // that the program leaves without closing it comes back where it was.
    static void keep(QWidget& window, const QString& section);
};

} // namespace zelto
