#include "FailureLogSink.h"

#include "distribution/RemotePlacement.h"
#include "log/LogSink.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

namespace zelto {
namespace {

// A file the user's cancel stopped: ended by it, or never started after it. A file that was
// not tried for another reason (a failed connect) carries that reason as its message.
bool cancelled(const FileEntry& entry)
{
    return entry.result == ids::kPutCanceled
        || (entry.result == FileEntry::kNotTried && entry.message.isEmpty());
}

} // namespace

FailureLogSink::FailureLogSink(LogSink& log) : log_(log)
{
}

void FailureLogSink::siteFinished(const SiteOutcome& outcome)
{
    const JobSite& site = outcome.site;
    for (const auto& entry : outcome.files) {
        if (entry.result == FileEntry::kSent)
            continue;
        LogEvent event;
        event.messageId = ids::kLogFtpTransferFailed;
        event.field1 = StringTable::text(ids::kLocalMachine);
        event.field2 = site.server;
        event.field3 = RemotePlacement::remotePath(entry.remoteFolder, entry.localName);
        event.detail = cancelled(entry) ? StringTable::text(ids::kPutCanceled) : entry.message;
        log_.write(event);
    }
}

} // namespace zelto
