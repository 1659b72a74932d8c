#pragma once

#include <QDateTime>
#include <QString>

namespace zelto {

// The time and date stamps of log records, by the format indexes of the Log page. The clock is
// the caller's, so that stamps can be checked for any moment.
class LogStamp final {
public:
    LogStamp() = delete;

    // 0 "hh:mm", 1 "hh:mm:ss", 2 "hh:mmam", 3 "hh:mm:sspm"; any other index is 0.
    [[nodiscard]] static QString time(const QDateTime& now, int format);
    // 0 dd/mm/yyyy, 1 mm/dd/yyyy, 2 dd/mm, 3 mm/dd, 4 dd-Mon-yyyy, 5 Mon-dd-yyyy, 6 dd-Mon-yyyy,
    // 7 Mon-dd; any other index is 0.
    [[nodiscard]] static QString date(const QDateTime& now, int format);
};

} // namespace zelto
