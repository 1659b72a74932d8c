#pragma once

#include "app/CommandLine.h"

namespace zelto {
class Notifier;
class SoundPlayer;
struct RunWindows;
} // namespace zelto

namespace zelto {

// Exit statuses of the program.
inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1; // the work ran, and some of it failed
inline constexpr int kExitRefused = 2; // the work could not start

class StartupChecks final {
public:
    StartupChecks() = delete;

    // 0 when the requested work may start, otherwise the id of the message that refuses it: a
    // script must end in ".cmd" (any case) and exist; a link must have its file in the data folder.
    [[nodiscard]] static int refusal(const StartRequest& request);

    // An interactive start with "Empty Queue" chosen empties the queue file; the other choices are
    // the queue processor's.
    static void applyQueueStartRule();

    // Runs the unattended work of the command line to its end, or tells `notifier` why it cannot
    // start; `windows` show a link or a script on a desktop. Returns the exit status, the same
    // with windows as without.
    [[nodiscard]] static int runUnattended(const StartRequest& request, Notifier& notifier,
        SoundPlayer& player, const RunWindows& windows);
};

} // namespace zelto
