#pragma once

#include "log/LogListener.h"

#include <cstdio>
#include <mutex>

namespace zelto {

// Shows the log of an unattended run: one line per shown record on standard output (time, event
// text, the three fields and the detail). Lines of concurrent writers never mix.
class ConsoleLogReporter final : public LogListener {
public:
    explicit ConsoleLogReporter(std::FILE* out = stdout);

    void recordAdded(const LogRecord& record, bool visible) override;

private:
    std::FILE* out_;
    std::mutex mutex_;
};

} // namespace zelto
