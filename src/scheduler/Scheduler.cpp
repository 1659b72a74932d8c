#include "Scheduler.h"

#include "scheduler/ScheduleCheck.h"
#include "scheduler/ScheduleStore.h"
#include "settings/SettingsStore.h"

namespace zelto {

Scheduler::Scheduler(Starts starts, Clock clock)
    : starts_(std::move(starts)), clock_(std::move(clock))
{
    // A check a minute must not drift across minute boundaries.
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(kFirstPeriod);
    QObject::connect(&timer_, &QTimer::timeout, [this] { tick(); });
}

bool Scheduler::onInSettings()
{
    return SettingsStore::get(settings::config::kScheduler) != QLatin1StringView(settings::kNo);
}

void Scheduler::setScheduler(bool on)
{
    timer_.setInterval(kFirstPeriod);
    if (on)
        timer_.start();
    else
        timer_.stop();
}

void Scheduler::tick()
{
    if (!isOn())
        return;
    checkSchedule();
    if (period() != kPeriod)
        timer_.start(kPeriod);
}

void Scheduler::checkSchedule()
{
    for (const auto& due : ScheduleCheck::due(ScheduleStore::readEntries(), clock_())) {
        if (due.script)
            starts_.script(due.entry.name);
        else
            starts_.link(due.entry.name);
    }
}

} // namespace zelto
