#pragma once

#include "ftp/JobProgress.h"

#include <QDialog>
#include <QPoint>
#include <QRect>
#include <QTimer>

#include <array>
#include <chrono>
#include <memory>

class QFontMetrics;
class QLabel;
class QProgressBar;

namespace zelto {

class Notifier;
class TransferJob;
enum class TransferMode;

// The modeless window of one transfer job: the progress of the job and of its current file (two
// bars, bytes, rate and time left of each), the status line, where the file comes from and goes
// to, a small animation and Cancel. It reads the job's progress on a timer and closes itself
// once the job has ended; it never waits for the job's worker, and the job never waits for it.
//
// The window does not start the job: its caller does, right after showing it (job->start()), so
// that a caller keeps its own end-of-job call and a window can be put around a running job. The
// window deletes itself when it closes; the job lives on with its worker until it has ended.
//
// Only Cancel (the button, Alt+C, Enter, Esc, or the window manager's close) and the job's end
// close it: Cancel pauses the job while it asks the user. One site: "<server>: Cancel FTP
// sending?", Yes cancels the job and closes the window at once, No lets it go on. A job list:
// "All" cancels every site left and closes the window, "Only this one" drops the site under way
// and the window stays for the rest, "Cancel" lets it go on.
class CTransferDlg final : public QDialog {
    Q_OBJECT
public:
    // Between two reads of the job's progress.
    static constexpr std::chrono::milliseconds kPollInterval { 100 };
    // The cascade of the windows of one Send Parallel: each one this far from the one before, or
    // back at kCascadeRestart (from the screen's corner) once the one before reaches an edge.
    static constexpr QPoint kCascadeStep { 10, 20 };
    static constexpr QPoint kCascadeRestart { 20, 40 };

    // `anchor` is the window opened just before this one in the same distribution, or none (a
    // caller that keeps it in a QPointer passes none once that window has closed). `notifier`
    // asks Cancel's question; it outlives the window.
    CTransferDlg(std::shared_ptr<TransferJob> job, Notifier& notifier,
        CTransferDlg* anchor = nullptr, QWidget* parent = nullptr);
    CTransferDlg(const CTransferDlg&) = delete;
    CTransferDlg& operator=(const CTransferDlg&) = delete;

    // Where the window after one with frame `anchor` goes on a screen whose free area is
    // `screen`: kCascadeStep from the anchor's corner, except that x is the screen's left +
    // kCascadeRestart.x() when the anchor's right edge + kCascadeStep.x() reaches the screen's
    // right edge, and y likewise at the bottom.
    [[nodiscard]] static QPoint cascadePosition(const QRect& anchor, const QRect& screen);
    // The title for a job of `mode` with `server` (the site under way; a copy's source), a copy's
    // `target`, and the profile name of the site under way when it has one.
    [[nodiscard]] static QString titleOf(TransferMode mode, const QString& server,
        const QString& target, const QString& siteName = {});
    // A site as the titles name it: the server, and the profile name after it where it differs.
    [[nodiscard]] static QString siteOf(const QString& server, const QString& siteName);
    // `path` as a field `width` pixels wide shows it: whole when it fits, otherwise "…" and as
    // much of its end as fits.
    [[nodiscard]] static QString elidedPath(
        const QString& path, const QFontMetrics& metrics, int width);

    // The job shown, for a view of every job.
    [[nodiscard]] TransferJob& job() const { return *job_; }
    // Counts the windows in the order they were opened, from 1.
    [[nodiscard]] quint64 number() const { return number_; }

    // Esc asks as Cancel does.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildWidgets();
    [[nodiscard]] QString title() const;
    void poll();
    void showProgress(const JobProgress::Snapshot& progress);
    void cancelPressed();
    // Ask the user and act on the answer; true when the window is to close.
    [[nodiscard]] bool cancelSingle();
    [[nodiscard]] bool cancelSerial();
    void closeNow();

    std::shared_ptr<TransferJob> job_;
    Notifier& notifier_;
    QTimer poll_;
    quint64 number_;
    bool asking_ = false;
    bool closing_ = false;

    QProgressBar* jobBar_ = nullptr;
    QProgressBar* fileBar_ = nullptr;
    // The six progress texts, the two paths and the status line, indexed by JobProgress::Text.
    std::array<QLabel*, JobProgress::kTextCount> texts_ {};
};

} // namespace zelto
