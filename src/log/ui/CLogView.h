#pragma once

#include "log/LogListener.h"
#include "log/LogRecord.h"

#include <QList>
#include <QTableView>

#include <functional>
#include <memory>
#include <mutex>

class QPrinter;

namespace zelto {

class LogTableModel;
class LogWriter;
class Notifier;

// The log window: every record of the run in a report list, filtered by outcome, with the Logs
// menu's commands (open, save, clear, filter) and printing. Records come from the log writer on
// any thread; they are gathered and shown in batches on the UI thread, so a burst of records
// costs one queued call per batch, not one per record.
class CLogView final : public QTableView, private LogListener {
    Q_OBJECT
public:
    enum class FileAction { Open, Save };
    // Asks the user for a log file to read or to write; an empty text when the user cancels.
    using FileChooser = std::function<QString(QWidget* parent, FileAction action)>;

    // Listens to `writer` from now on; `notifier` asks before a saved log replaces a file.
    CLogView(LogWriter& writer, Notifier& notifier, QWidget* parent = nullptr);
    ~CLogView() override;
    CLogView(const CLogView&) = delete;
    CLogView& operator=(const CLogView&) = delete;

    [[nodiscard]] LogFilter filter() const;
    // In place of the file dialogs, for callers that know the file already.
    void setFileChooser(FileChooser chooser) { chooseFile_ = std::move(chooser); }

    // Draws every page, or the printer's page range, of the shown rows; nothing when none is shown.
    void printDocument(QPrinter* printer);

public Q_SLOTS:
    // Shows the records that pass `filter` and keeps the choice in the settings.
    void setFilter(LogFilter filter);
    // Reads an earlier log file into the log, as new records that are not written to the file.
    void openLog();
    // Writes the shown rows to a log file of the user's choice; nothing when no row is shown.
    void saveLog();
    // Empties the view (and the records it keeps) once the user has agreed.
    void clearLog();
    // Puts the selected rows on the clipboard, a line of tab-separated columns each.
    void copySelection();
    void print();
    void printPreview();
    void pageSetup();

Q_SIGNALS:
    void filterChanged(LogFilter filter);

private:
    void recordAdded(const LogRecord& record, bool visible) override;
    void showPending();
    void setInitialColumnWidths();
    void addContextActions();
    [[nodiscard]] QString selectedText() const;
    [[nodiscard]] QPrinter& printer();

    LogWriter& writer_;
    Notifier& notifier_;
    LogTableModel* model_;
    FileChooser chooseFile_;
    std::unique_ptr<QPrinter> printer_;

    std::mutex pendingMutex_;
    QList<LogRecord> pending_; // written by the writers' threads, taken by the UI thread
};

} // namespace zelto
