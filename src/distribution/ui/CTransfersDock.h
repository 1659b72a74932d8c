#pragma once

#include <QDockWidget>
#include <QTimer>

#include <chrono>

class QTableWidget;

namespace zelto {

class CTransferDlg;

// "Transfers": every transfer window of the program in one table, a row per window (so a row per
// site of a Send Parallel, and the site under way of a serial job): the site, the file under way,
// the job's bar, its rate and its status line. It reads what the windows read, the jobs'
// progress, on a timer of its own while it is shown; a double click raises that job's window.
class CTransfersDock final : public QDockWidget {
    Q_OBJECT
public:
    static constexpr std::chrono::milliseconds kPollInterval { 500 };
    enum Column { Site, File, Progress, Rate, State, ColumnCount };

    explicit CTransfersDock(QWidget* parent = nullptr);

    // Reads the open transfer windows now, as each tick does.
    void refresh();
    // The windows of the rows, in row order.
    [[nodiscard]] QList<CTransferDlg*> windows() const;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void raiseRow(int row) const;

    QTableWidget* table_;
    QTimer poll_;
};

} // namespace zelto
