#pragma once

#include "app/CommandLine.h"

namespace zelto {

// A run with a display: the main window (hidden in an unattended run), message boxes for refusals.
class WindowedRun final {
public:
    WindowedRun() = delete;

    // Runs the event loop when there is work for it; returns the program's exit status.
    [[nodiscard]] static int run(const StartRequest& request);
};

} // namespace zelto
