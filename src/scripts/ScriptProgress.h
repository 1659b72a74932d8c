#pragma once

#include "scripts/ScriptProgressSink.h"

#include <QString>
#include <QStringList>

#include <mutex>
#include <optional>

namespace zelto {

// The progress lines of a script that runs beside the windows, kept for its progress window to
// read on its timer: the worker only appends, under a lock, and never waits for the window.
class ScriptProgress final : public ScriptProgressSink {
public:
    void addLine(const QString& line) override;
    void ended(const ScriptTally& tally) override;

    // The lines from `first` on (a window asks for those it has not shown yet).
    [[nodiscard]] QStringList linesFrom(qsizetype first) const;
    // None while the run goes on; then how it ended.
    [[nodiscard]] std::optional<ScriptTally> outcome() const;

private:
    mutable std::mutex mutex_;
    QStringList lines_;
    std::optional<ScriptTally> outcome_;
};

} // namespace zelto
