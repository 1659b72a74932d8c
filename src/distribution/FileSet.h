#pragma once

#include "distribution/FileEntry.h"
#include "profiles/FileListEntry.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace zelto {

class Notifier;

// The files of one send, built from a file list when the send starts: each local file once (the
// first time it is met), in list order, a folder replaced by the files under it, remote names in
// the case that FileCasingPut asks for, and the sum of their sizes. Every job of the send gets a
// copy.
class FileSet final {
public:
    // Shows what the preparation is doing (the wait text), and an empty text when it is done.
    using StatusText = std::function<void(const QString&)>;

    // The common preparation of Send Parallel and Send Serial: refuses with ids::kNoTargetSites
    // when there is no site and with ids::kNoFilesToSend when there is no file (stop icon, through
    // `notifier`), otherwise builds the set while `status` shows 233.
    [[nodiscard]] static std::optional<FileSet> prepare(std::size_t siteCount,
        const std::vector<FileListEntry>& entries, Notifier& notifier,
        const StatusText& status = {});

    // Builds the set with the FileCasingPut of now. A file that is missing stays in the set with
    // its listed size, so that its failure is reported like any other.
    [[nodiscard]] static FileSet build(const std::vector<FileListEntry>& entries);

    [[nodiscard]] const std::vector<FileEntry>& files() const { return files_; }
    [[nodiscard]] qint64 totalBytes() const { return totalBytes_; }
    [[nodiscard]] bool isEmpty() const { return files_.empty(); }

private:
    std::vector<FileEntry> files_;
    qint64 totalBytes_ = 0;
};

} // namespace zelto
