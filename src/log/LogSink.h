#pragma once

#include <QString>

#include <optional>

namespace zelto {

// One outcome of FTP work to be logged: a message id of the log event table (32861..32877), three
// texts chosen by the caller (the names of what was acted on) and a free detail (a server's reply).
struct LogEvent {
    int messageId = 0;
    QString field1;
    QString field2;
    QString field3;
    QString detail;
    // Given only when the caller supplies its own stamps; otherwise the writer stamps the record.
    std::optional<QString> time;
    std::optional<QString> date;
    bool toFile = true;
};

// Where the engine writes its log events. The log writer is the one real sink; every worker may
// call it at any time from its own thread.
class LogSink {
public:
    virtual ~LogSink() = default;
    virtual void write(const LogEvent& event) = 0;
};

} // namespace zelto
