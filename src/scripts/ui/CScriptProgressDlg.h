#pragma once

#include <QDialog>
#include <QStringListModel>
#include <QTimer>

#include <chrono>
#include <memory>

class QListView;
class QPushButton;

namespace zelto {

class Notifier;
class ScriptProgress;
class ScriptRun;

// The progress window of a command script: the lines of every step, as the run reports them, a
// button that holds the run ("Pause") and lets it go on ("Resume"), and "Stop", which asks
// whether to cancel the run. Closing the window while the run goes on asks the same. Once the
// run has ended a closing line counts the steps that succeeded and failed, and "Stop" becomes
// "Close". It reads the run on a timer and never waits for its worker; it deletes itself when
// closed.
class CScriptProgressDlg final : public QDialog {
    Q_OBJECT
public:
    static constexpr std::chrono::milliseconds kPollInterval { 100 };

    CScriptProgressDlg(const QString& scriptPath, std::shared_ptr<ScriptRun> run,
        std::shared_ptr<ScriptProgress> progress, Notifier& notifier, QWidget* parent = nullptr);
    ~CScriptProgressDlg() override;

    [[nodiscard]] QPushButton* toggleButton() const { return toggle_; }
    [[nodiscard]] QPushButton* stopButton() const { return stop_; }
    [[nodiscard]] QStringList shownLines() const { return lines_.stringList(); }

public Q_SLOTS:
    // Suspends a running script or resumes a suspended one.
    void toggle();
    // While the run goes on: asks whether to cancel it, and stops it on Yes. Once it has ended:
    // closes the window.
    void stopOrClose();
    // Escape closes the window as its title bar does, with the same question.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void placeBesideTransfers();
    void poll();
    void showState();
    // Holds the run while the user is asked; true when the user chose to cancel it, which is
    // then stopped.
    [[nodiscard]] bool askToStop();
    void showEnd();

    std::shared_ptr<ScriptRun> run_;
    std::shared_ptr<ScriptProgress> progress_;
    Notifier& notifier_;
    QStringListModel lines_;
    QListView* list_;
    QPushButton* toggle_;
    QPushButton* stop_;
    bool ended_ = false;
    QTimer poll_;
};

} // namespace zelto
