#pragma once

#include <QObject>
#include <QString>

class QWidget;

namespace zelto {

// A window's place and size in the settings under "Dimensions\<name>" (x, y, Width, Height). The
// first opening keeps the size the window asked for, centred on its parent; each later one comes
// back where the user left it, moved onto the screen when that place is off it. Saved when the
// window is hidden.
class StoredPlacement final : public QObject {
    Q_OBJECT
public:
    // Restores the stored placement now; lives as long as the window.
    StoredPlacement(const QString& name, QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void restore();
    void save() const;

    QString section_;
    QWidget& window_;
};

} // namespace zelto
