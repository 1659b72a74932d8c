#pragma once

#include "app/CommandLine.h"

namespace zelto {

// A run with a display: the main window, or in an unattended run the work's own windows alone;
// message boxes for refusals.
class WindowedRun final {
public:
    WindowedRun() = delete;

    // Makes the widget application from the process's arguments, runs the event loop when there is
    // work for it, and returns the program's exit status.
    [[nodiscard]] static int run(int& argc, char** argv, const StartRequest& request);
    // The same in the running widget application.
    [[nodiscard]] static int runWindows(const StartRequest& request);
};

} // namespace zelto
