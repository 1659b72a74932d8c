#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace zelto {

// What the command line asks for: a script to run, a link to run or the queue to send once, any of
// which makes the run unattended.
struct StartRequest {
    QString scriptFile;
    QString linkName;
    bool queueRun = false;
    // With queueRun: make every item idle instead of sending the queue.
    bool resetQueue = false;
    bool unattended = false;
};

// Reads parameters one by one. Only the first accepted form counts: "b" (any case) followed by a
// script path, "l" followed by a link name, or "q" (any case) alone, which "--reset" before or
// after it turns into a reset of the queue; everything else is dropped
// without a word.
class CommandLineParser final {
public:
    // A parameter is a flag when it starts with "-", or when it is "/" and one letter, so that an
    // absolute path stays a value. Returns the flag's name without its prefix.
    [[nodiscard]] static std::optional<QString> flagName(const QString& parameter);

    [[nodiscard]] static StartRequest parse(const QStringList& parameters);

    void parseParameter(const QString& parameter, bool isFlag);
    [[nodiscard]] const StartRequest& request() const { return request_; }

private:
    std::optional<QString> pendingFlag_;
    StartRequest request_;
};

} // namespace zelto
