#pragma once

#include <QSize>
#include <QString>

class QWidget;

namespace zelto {

// Where a top-level window was left, under its settings section ("Dimensions\Files\Mainframe"):
// `Width`, `Height`, `x` and `y`.
class StoredPlacement final {
public:
    explicit StoredPlacement(QString section);

    // Puts the window where it was left. With nothing stored it opens at `readable` size, centred
    // on `over` (or on its screen without one), so that a first opening is neither tiny nor lost.
    void restore(QWidget& window, const QWidget* over, QSize readable) const;
    // Writes the place and size of a window shown in its normal state; a minimised or maximised
    // window's size is not the one to come back to.
    void save(const QWidget& window) const;

private:
    QString section_;
};

} // namespace zelto
