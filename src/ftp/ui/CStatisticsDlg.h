#pragma once

#include "ftp/TransferCounters.h"

#include <QDialog>
#include <QTimer>

#include <functional>
#include <optional>

class QLabel;
class QProgressBar;

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

    // Whether the bar moves: bytes moved between the last two refreshes.
    [[nodiscard]] bool showsBusy() const;

public Q_SLOTS:
    // Sets every field from the counters, as each tick of the timer does.
    void refresh();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void moveEvent(QMoveEvent* event) override;

private:
    void placeOnScreen();
    void showBusy(bool busy);

    CounterSource counters_;
    QTimer timer_;
    // Creating and placing the window move it twice; only the user's moves are remembered.
    int movesSeen_ = 0;

    std::optional<TransferCounters::Snapshot> lastCounts_;
    QProgressBar* busy_;
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
