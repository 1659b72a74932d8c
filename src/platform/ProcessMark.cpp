#include "ProcessMark.h"

#include <QByteArrayList>
#include <QFile>
#include <QStringList>

#include <cerrno>
#include <optional>
#include <signal.h>
#include <unistd.h>

namespace zelto {
namespace {

struct ProcessState {
    qint64 start = 0;
    bool zombie = false; // ended, waiting for its parent to collect it
};

// From /proc/<pid>/stat. The name in parentheses may hold blanks and parentheses itself, so the
// fields are counted from the last ")": the state is field 3, the start time field 22.
std::optional<ProcessState> stateOf(qint64 pid)
{
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray line = stat.readAll();
    const qsizetype nameEnd = line.lastIndexOf(')');
    if (nameEnd < 0)
        return std::nullopt;
    const QByteArrayList fields = line.mid(nameEnd + 2).split(' ');
    constexpr int kStateIndex = 0;
    constexpr int kStartIndex = 22 - 3;
    if (fields.size() <= kStartIndex)
        return std::nullopt;
    bool ok = false;
    const qint64 start = fields[kStartIndex].toLongLong(&ok);
    if (!ok)
        return std::nullopt;
    return ProcessState { start, fields[kStateIndex] == "Z" };
}

} // namespace

QString ProcessMark::current()
{
    return of(::getpid());
}

QString ProcessMark::of(qint64 pid)
{
    const auto state = stateOf(pid);
    if (!state || state->zombie)
        return {};
    return QStringLiteral("%1 %2").arg(pid).arg(state->start);
}

bool ProcessMark::running(const QString& mark)
{
    const QStringList parts = mark.split(u' ');
    bool pidOk = false;
    bool startOk = false;
    const qint64 pid = parts.value(0).toLongLong(&pidOk);
    const qint64 start = parts.value(1).toLongLong(&startOk);
    if (parts.size() != 2 || !pidOk || !startOk || pid <= 0)
        return true;
    if (const auto state = stateOf(pid))
        return !state->zombie && state->start == start;
    // No process table to read (or not ours to read): the id alone tells.
    return ::kill(pid_t(pid), 0) == 0 || errno == EPERM;
}

} // namespace zelto
