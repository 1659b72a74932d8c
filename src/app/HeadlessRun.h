#pragma once

#include "app/CommandLine.h"

namespace zelto {

// A run without any window: the unattended work of the command line, with messages on standard
// error, or, when nothing was asked, the version and where settings and data live.
class HeadlessRun final {
public:
    HeadlessRun() = delete;

    // Returns the program's exit status.
    [[nodiscard]] static int run(const StartRequest& request);
};

} // namespace zelto
