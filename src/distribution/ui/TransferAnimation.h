#pragma once

#include "distribution/TransferMode.h"

#include <QElapsedTimer>
#include <QIcon>
#include <QPixmap>
#include <QTimer>
#include <QWidget>

#include <chrono>

namespace zelto {

// The small animation of a transfer window: a sheet that flies, over and over, from the end the
// files come from to the end they go to (this computer or a server), painted from the theme's
// icons. It runs only while it is shown.
class TransferAnimation final : public QWidget {
    Q_OBJECT
public:
    // One flight of the sheet, and the time between two frames of it.
    static constexpr std::chrono::milliseconds kFlight { 1200 };
    static constexpr std::chrono::milliseconds kFrame { 80 };

    explicit TransferAnimation(TransferMode mode, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    // The two ends and the path between them, painted once: each frame only adds the sheet.
    [[nodiscard]] QPixmap scene() const;

    QIcon source_;
    QIcon destination_;
    QIcon sheet_;
    mutable QPixmap scene_;
    QTimer frames_;
    QElapsedTimer clock_;
};

} // namespace zelto
