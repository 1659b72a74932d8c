#pragma once

#include <QDateTime>
#include <QString>

namespace zelto {

// One row of a local or remote file list: what a listing tells about an entry. The file type is
// not carried; the list derives it from the name.
struct FileRow {
    QString name;
    qint64 size = 0;
    bool folder = false;
    QDateTime modified;

    friend bool operator==(const FileRow&, const FileRow&) = default;
};

} // namespace zelto
