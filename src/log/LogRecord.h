#pragma once

#include "platform/StringIds.h"

#include <QString>
#include <QtGlobal>

namespace zelto {

// Which records the log view shows (key View in section LOG).
enum class LogFilter { All, Successful, Unsuccessful };

// One logged outcome of FTP work, as the log view keeps it and the log file stores it.
struct LogRecord final {
    quint32 seq = 0; // counted from 1 by the writer; not stored in the file
    qint32 outcome = 0; // even: success, odd: failure
    quint32 messageId = 0; // the string id of the event text
    QString field1;
    QString field2;
    QString field3;
    QString time;
    QString date;
    QString detail;

    // Event ids come in OK/Failed pairs, so the parity of (id - first id) tells success. The
    // session-end code is shown with the text of the id before it, but keeps its own outcome (16),
    // which is computed before the id is mapped: "Internet Connection Closed" stays odd.
    void setMessage(int id)
    {
        outcome = id - ids::kLogFtpConnectionOk;
        messageId = static_cast<quint32>(
            id == ids::kLogSessionEnded ? ids::kLogInternetConnectionClosed : id);
    }

    [[nodiscard]] bool succeeded() const { return outcome % 2 == 0; }

    [[nodiscard]] bool shownUnder(LogFilter filter) const
    {
        switch (filter) {
        case LogFilter::All:
            return true;
        case LogFilter::Successful:
            return succeeded();
        case LogFilter::Unsuccessful:
            return !succeeded();
        }
        return true;
    }
};

} // namespace zelto
