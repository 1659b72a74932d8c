#pragma once

namespace zelto {

struct LogRecord;

// Receives every record the log writer shows on screen. Called on the writing thread, in the
// order of the records' numbers; a listener that owns widgets queues the record to its own thread.
// `visible` tells whether the record passes the view filter: a filtered-out record is still
// delivered, since the log view keeps every record of the run.
class LogListener {
public:
    virtual ~LogListener() = default;
    virtual void recordAdded(const LogRecord& record, bool visible) = 0;
};

} // namespace zelto
