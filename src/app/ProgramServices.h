#pragma once

#include "app/NoTray.h"
#include "distribution/WorkerThreads.h"
#include "ftp/JobServices.h"
#include "log/LogWriter.h"
#include "options/SoundEvents.h"

namespace zelto {

class Notifier;
class SoundPlayer;
class TrayIndicator;

// What every run of the program lends its transfer work: the log writer, the sounds, the tray,
// the notifier, and the worker threads. The threads are stopped and joined first when this ends,
// so no worker outlives the services it reports to.
class ProgramServices final {
public:
    // An unattended run: no tray icon.
    ProgramServices(Notifier& notifier, SoundPlayer& player);
    ProgramServices(Notifier& notifier, SoundPlayer& player, TrayIndicator& tray);
    ProgramServices(const ProgramServices&) = delete;
    ProgramServices& operator=(const ProgramServices&) = delete;

    [[nodiscard]] JobServices& jobs() { return jobs_; }
    [[nodiscard]] LogWriter& log() { return log_; }
    [[nodiscard]] WorkerThreads& threads() { return threads_; }

private:
    NoTray noTray_;
    LogWriter log_;
    SoundEvents sounds_;
    JobServices jobs_;
    WorkerThreads threads_;
};

} // namespace zelto
