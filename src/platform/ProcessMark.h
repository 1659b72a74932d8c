#pragma once

#include <QString>

namespace zelto {

// Which process marked something, so that a later process can tell whether the marker still
// runs: "<process id> <start time>". The start time (in clock ticks since boot) tells a process
// apart from a later one that was given the same id.
class ProcessMark final {
public:
    ProcessMark() = delete;

    // This process's mark.
    [[nodiscard]] static QString current();
    // The mark of the running process `pid`; empty when it does not run.
    [[nodiscard]] static QString of(qint64 pid);
    // The marking process still runs. A mark that cannot be read counts as running: nothing
    // shows that its work was abandoned.
    [[nodiscard]] static bool running(const QString& mark);
};

} // namespace zelto
