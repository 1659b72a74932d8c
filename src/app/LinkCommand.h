#pragma once

#include "distribution/LinkDistribution.h"

#include <QString>

namespace zelto {

class Notifier;
class SoundPlayer;

// The unattended run of a link named on the command line: the link's sites are served in
// parallel, a line per file and site goes to standard output, and the run ends by itself when
// the last site has ended. The log goes to the log file only, so that nothing is printed twice.
class LinkCommand final {
public:
    LinkCommand() = delete;

    // Runs link `name` (which must exist) in the event loop of the running application. Returns
    // the exit status: 0 when every file reached every site (so also for a link without sites,
    // which has nothing that could fail), 1 when any did not. `window`, when set, is handed each
    // site's job just before it starts.
    [[nodiscard]] static int run(const QString& name, Notifier& notifier, SoundPlayer& player,
        const LinkDistribution::JobStarting& window = {});
};

} // namespace zelto
