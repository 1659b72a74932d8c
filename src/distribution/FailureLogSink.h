#pragma once

#include "distribution/JobOutcomeSink.h"

namespace zelto {

class LogSink;

// The end of one site of a distribution while there is no queue to take its failed files: logs
// 32864 "FTP Transfer Failed" for each file that was not sent, as the queue's bookkeeping does:
// source "Local Machine", destination the host, the file as the remote folder joined with the
// local name, and the reason ("FTP Put Canceled" for a cancelled file, else the file's message).
class FailureLogSink final : public JobOutcomeSink {
public:
    explicit FailureLogSink(LogSink& log);

    void siteFinished(const SiteOutcome& outcome) override;

private:
    LogSink& log_;
};

} // namespace zelto
