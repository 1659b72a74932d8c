#pragma once

namespace zelto {

// How a script run ended: its steps that succeeded and failed (a malformed or unknown line
// counts as a failed step), and whether it was stopped before the end of the script.
struct ScriptTally {
    int succeeded = 0;
    int failed = 0;
    bool stopped = false;

    [[nodiscard]] bool allSucceeded() const { return failed == 0 && !stopped; }
};

} // namespace zelto
