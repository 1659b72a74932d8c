#pragma once

#include "scripts/ScriptTally.h"

#include <QString>

namespace zelto {

// Where a running script reports what it does: its progress window, or standard output in an
// unattended run. Both calls come from the script's worker thread; an implementation that shows
// the lines in a window hands them over to the window's own thread.
class ScriptProgressSink {
public:
    virtual ~ScriptProgressSink() = default;
    // One progress line, in the order of the steps.
    virtual void addLine(const QString& line) = 0;
    // The run has ended and its connections are closed; the run counts as finished once this
    // has returned.
    virtual void ended(const ScriptTally& tally) = 0;
};

} // namespace zelto
