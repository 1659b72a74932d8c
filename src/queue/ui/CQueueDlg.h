#pragma once

#include "queue/QueueStore.h"
#include "queue/ui/QueueRowsModel.h"

#include <QDialog>

#include <array>
#include <functional>

class QAction;
class QMenu;
class QProgressBar;
class QPushButton;
class QTreeView;

namespace zelto {

class Notifier;
class WorkerThreads;

// The queue window: the failed transfers of the queue file as they stood when it opened, to send
// again, reset, delete from or clear. The file is read and written on a worker (a long queue holds
// its lock a while) and the window waits for neither; a change goes to the file as it is then,
// so that what jobs did to the queue meanwhile is kept.
class CQueueDlg final : public QDialog {
    Q_OBJECT
public:
    // The context menu's commands.
    enum Command { Delete, Send, Reset, Grid, AdjustWidths, SelectAll, UnselectAll, kCommands };

    // `sendQueue` starts a send of the whole queue; `help` shows this window's help, whose button
    // is off without it.
    CQueueDlg(QueueStore store, WorkerThreads& threads, Notifier& notifier,
        std::function<void()> sendQueue, std::function<void()> help = {},
        QWidget* parent = nullptr);

    [[nodiscard]] QTreeView* list() const { return list_; }
    [[nodiscard]] QueueRowsModel& rows() { return rows_; }
    [[nodiscard]] QMenu* contextMenu() const { return menu_; }
    [[nodiscard]] QAction* command(Command command) const
    {
        return commands_[std::size_t(command)];
    }
    [[nodiscard]] QPushButton* sendAllButton() const { return sendAll_; }
    [[nodiscard]] QPushButton* clearButton() const { return clear_; }
    // Reading or writing the queue file.
    [[nodiscard]] bool busy() const { return busy_; }

public Q_SLOTS:
    // Sends the queue and closes, unless no row is idle.
    void sendAll();
    void clearList();
    void deleteSelected();
    void resetAll();
    // A header click: ascending first, then each click the other way.
    void sortBy(int column);

protected:
    // Keeps the place and size the window is closed at.
    void done(int result) override;

private:
    void buildCommands();
    // Starts a send; false (and a message) when no row is idle.
    bool send();
    void adjustWidths();
    void setBusy(bool busy);
    // Runs `change` on the file on a worker; `done` follows on this thread once it was written.
    void writeQueue(std::function<bool(QueueStore&)> change, std::function<void()> done);

    QueueStore store_;
    WorkerThreads& threads_;
    Notifier& notifier_;
    std::function<void()> sendQueue_;
    QueueRowsModel rows_;
    QTreeView* list_;
    QMenu* menu_;
    std::array<QAction*, kCommands> commands_ {};
    QPushButton* sendAll_;
    QPushButton* clear_;
    QProgressBar* progress_;
    bool busy_ = false;
    // Per column: the next click sorts ascending unless the last one did.
    std::array<bool, QueueRowsModel::kColumns> ascending_ {};
};

} // namespace zelto
