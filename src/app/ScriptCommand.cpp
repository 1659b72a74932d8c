#include "ScriptCommand.h"

#include "app/ProgramServices.h"
#include "app/StartupChecks.h"
#include "scripts/ScriptProgress.h"
#include "scripts/ScriptProgressSink.h"
#include "scripts/ScriptRun.h"

#include <QCoreApplication>

#include <cstdio>

namespace zelto {
namespace {

// Prints each line as it comes.
class ConsoleLines final : public ScriptProgressSink {
public:
    void addLine(const QString& line) override
    {
        const QByteArray bytes = (line + u'\n').toLocal8Bit();
        std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
        std::fflush(stdout);
    }

    void ended(const ScriptTally&) override { }
};

// Hands the lines on to where they are shown, and ends the event loop when the script has ended;
// the worker posts the end rather than ending the loop itself, as the loop belongs to the main
// thread.
class ExitAtEnd final : public ScriptProgressSink {
public:
    explicit ExitAtEnd(std::shared_ptr<ScriptProgressSink> shown) : shown_(std::move(shown)) { }

    void addLine(const QString& line) override { shown_->addLine(line); }

    void ended(const ScriptTally& tally) override
    {
        shown_->ended(tally);
        const int status = tally.allSucceeded() ? kExitOk : kExitFailed;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [status] { QCoreApplication::exit(status); },
            Qt::QueuedConnection);
    }

private:
    std::shared_ptr<ScriptProgressSink> shown_;
};

} // namespace

int ScriptCommand::run(const QString& path, Notifier& notifier, SoundPlayer& player,
    const BackgroundWork::ScriptStarting& window)
{
    ProgramServices services(notifier, player);
    const auto progress = window ? std::make_shared<ScriptProgress>() : nullptr;
    std::shared_ptr<ScriptProgressSink> shown = progress;
    if (!shown)
        shown = std::make_shared<ConsoleLines>();
    const auto script = std::make_shared<ScriptRun>(
        services.jobs(), services.threads(), std::make_shared<ExitAtEnd>(std::move(shown)));
    if (window)
        window(path, script, progress);
    script->start(path);
    const int status = QCoreApplication::exec();
    // The script has ended by now; this only joins its thread.
    services.threads().stopAll();
    return services.log().recordsNotWritten() == 0 ? status : kExitFailed;
}

} // namespace zelto
