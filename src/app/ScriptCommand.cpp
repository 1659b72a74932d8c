#include "ScriptCommand.h"

#include "app/ProgramServices.h"
#include "app/StartupChecks.h"
#include "scripts/ScriptProgressSink.h"
#include "scripts/ScriptRun.h"

#include <QCoreApplication>

#include <cstdio>

namespace zelto {
namespace {

// Prints each line as it comes, and ends the event loop when the script has ended; the worker
// posts the end rather than ending the loop itself, as the loop belongs to the main thread.
class ConsoleLines final : public ScriptProgressSink {
public:
    void addLine(const QString& line) override
    {
        const QByteArray bytes = (line + u'\n').toLocal8Bit();
        std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
        std::fflush(stdout);
    }

    void ended(bool allSucceeded) override
    {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [allSucceeded] { QCoreApplication::exit(allSucceeded ? kExitOk : kExitFailed); },
            Qt::QueuedConnection);
    }
};

} // namespace

int ScriptCommand::run(const QString& path, Notifier& notifier, SoundPlayer& player)
{
    ProgramServices services(notifier, player);
    ScriptRun script(services.jobs(), services.threads(), std::make_shared<ConsoleLines>());
    script.start(path);
    const int status = QCoreApplication::exec();
    // The script has ended by now; this only joins its thread.
    services.threads().stopAll();
    return services.log().recordsNotWritten() == 0 ? status : kExitFailed;
}

} // namespace zelto
