#pragma once

namespace zelto {

class Notifier;
class SoundPlayer;

// The unattended send of the queue (-q): the queue is sent once as the resend timer sends it, a
// line per item goes to standard output as its job ends, and a closing line when the last job
// has ended. The log goes to the log file only.
class QueueCommand final {
public:
    QueueCommand() = delete;

    // Runs in the event loop of the running application. Returns the exit status: 0 when the
    // queue is empty at the end, 1 when items are left (failed again, or still marked as being
    // sent by an earlier run that did not end).
    [[nodiscard]] static int run(Notifier& notifier, SoundPlayer& player);
    // -q --reset: every item is made idle, as the queue window's reset does, for items left
    // marked as being sent. Returns 0, or 1 when the queue file could not be written.
    [[nodiscard]] static int reset(Notifier& notifier);
};

} // namespace zelto
