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

// The progress window of a command script: the lines of every step, as the run reports them, and
// one button that suspends the run ("Stop") and lets it go on ("Resume"). Closing the window
// while the run goes on asks whether to cancel it; a finished run's window just closes. It reads
// the run on a timer and never waits for its worker; it deletes itself when closed.
class CScriptProgressDlg final : public QDialog {
    Q_OBJECT
public:
    static constexpr std::chrono::milliseconds kPollInterval { 100 };

    CScriptProgressDlg(const QString& scriptPath, std::shared_ptr<ScriptRun> run,
        std::shared_ptr<ScriptProgress> progress, Notifier& notifier, QWidget* parent = nullptr);
    ~CScriptProgressDlg() override;

    [[nodiscard]] QPushButton* toggleButton() const { return toggle_; }
    [[nodiscard]] QStringList shownLines() const { return lines_.stringList(); }

public Q_SLOTS:
    // Suspends a running script or resumes a suspended one.
    void toggle();
    // Escape closes the window as its title bar does, with the same question.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void poll();
    void showState();

    std::shared_ptr<ScriptRun> run_;
    std::shared_ptr<ScriptProgress> progress_;
    Notifier& notifier_;
    QStringListModel lines_;
    QListView* list_;
    QPushButton* toggle_;
    QTimer poll_;
};

} // namespace zelto
