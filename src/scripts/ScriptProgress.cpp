#include "ScriptProgress.h"

namespace zelto {

void ScriptProgress::addLine(const QString& line)
{
    const std::lock_guard lock(mutex_);
    lines_.append(line);
}

void ScriptProgress::ended(const ScriptTally& tally)
{
    const std::lock_guard lock(mutex_);
    outcome_ = tally;
}

QStringList ScriptProgress::linesFrom(qsizetype first) const
{
    const std::lock_guard lock(mutex_);
    return lines_.mid(first);
}

std::optional<ScriptTally> ScriptProgress::outcome() const
{
    const std::lock_guard lock(mutex_);
    return outcome_;
}

} // namespace zelto
