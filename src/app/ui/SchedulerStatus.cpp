#include "SchedulerStatus.h"

#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "scheduler/ScheduleCheck.h"

#include <QCoreApplication>

#include <algorithm>

namespace zelto {

QString SchedulerStatus::statusText(bool on, const std::vector<ScheduleEntry>& entries)
{
    const QString state = QCoreApplication::translate("CMainFrame", "Scheduler: %1")
                              .arg(StringTable::text(on ? ids::kStateOn : ids::kStateOff));
    if (!on)
        return state;
    const auto runnable = std::count_if(entries.begin(), entries.end(), &ScheduleCheck::canRun);
    if (runnable == 0)
        return QCoreApplication::translate("CMainFrame", "%1, nothing scheduled").arg(state);
    if (runnable == 1)
        return QCoreApplication::translate("CMainFrame", "%1, 1 entry").arg(state);
    return QCoreApplication::translate("CMainFrame", "%1, %2 entries").arg(state).arg(runnable);
}

QString SchedulerStatus::nextText(
    bool on, const std::vector<ScheduleEntry>& entries, const QDateTime& now)
{
    if (!on)
        return {};
    const auto next = ScheduleCheck::next(entries, now);
    if (!next)
        return {};
    return QCoreApplication::translate("CMainFrame", "Next: %1 at %2")
        .arg(next->entry.name, next->at.toString(QStringLiteral("dd/MM/yyyy HH:mm")));
}

} // namespace zelto
