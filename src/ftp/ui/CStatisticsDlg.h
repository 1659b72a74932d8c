#pragma once

#include "ftp/TransferCounters.h"

#include <QDialog>
#include <QTimer>

#include <functional>

class QLabel;

namespace zelto {

// "Transfer Statistics": the process-wide transfer counters, refreshed every second while the
// window is shown. Modeless; one at a time (showOrRaise). It opens where the user last left it
// (SysInfo_X/SysInfo_Y), or centred when that place is unset or was off the screen.
class CStatisticsDlg final : public QDialog {
    Q_OBJECT
public:
    using CounterSource = std::function<TransferCounters::Snapshot()>;

    // `counters` defaults to the process-wide counters.
    explicit CStatisticsDlg(QWidget* parent = nullptr, CounterSource counters = {});

    // Opens the window, or brings the open one to the front; it ends when the user closes it.
    static void showOrRaise(QWidget* parent);

public Q_SLOTS:
    // Sets every field from the counters, as each tick of the timer does.
    void refresh();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void moveEvent(QMoveEvent* event) override;

private:
    void placeOnScreen();

    CounterSource counters_;
    QTimer timer_;
    // Creating and placing the window move it twice; only the user's moves are remembered.
    int movesSeen_ = 0;

    QLabel* localBytesRead_;
    QLabel* localBytesWritten_;
    QLabel* remoteBytesRead_;
    QLabel* remoteBytesWritten_;
    QLabel* filesTransferred_;
    QLabel* localRate_;
    QLabel* localTime_;
    QLabel* remoteRate_;
    QLabel* remoteTime_;
};

} // namespace zelto
