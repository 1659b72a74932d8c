#pragma once

#include "app/BackgroundWork.h"

#include <QString>

namespace zelto {

class Notifier;
class SoundPlayer;

// The unattended run of a command script named on the command line: the script runs on its
// worker, its progress lines go to standard output (or to its progress window on a desktop), and
// the program ends with the script. The log goes to the log file only, so that nothing is
// printed twice.
class ScriptCommand final {
public:
    ScriptCommand() = delete;

    // Runs script `path` (which must exist) in the event loop of the running application.
    // Returns the exit status: 0 when every line succeeded, 1 when any failed or the run was
    // stopped. `window`, when set, is handed the run to show its lines instead of the console.
    [[nodiscard]] static int run(const QString& path, Notifier& notifier, SoundPlayer& player,
        const BackgroundWork::ScriptStarting& window = {});
};

} // namespace zelto
