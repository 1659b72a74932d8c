#pragma once

#include "platform/Paths.h"

#include <QString>

namespace zelto {

// One file of a file list.
struct FileListEntry {
    QString folder; // without a trailing separator as a rule; an .fls line keeps its own
    QString localName; // may hold "*"
    QString remoteName; // empty: the local name
    qint64 size = 0;
    qint64 lastWrite = 0; // milliseconds since 1970 (UTC); 0 when not known
    int status = 0; // -1 once a send starts

    [[nodiscard]] QString localPath() const { return joinPath(folder, localName); }

    bool operator==(const FileListEntry&) const = default;
};

} // namespace zelto
