#include "QueueResendTimer.h"

#include "platform/PrivateProfile.h"
#include "queue/QueueSender.h"
#include "settings/SettingsStore.h"

#include <algorithm>
#include <limits>

namespace zelto {

QueueResendTimer::QueueResendTimer(QueueSender& sender, QObject* parent)
    : QObject(parent), sender_(sender)
{
    connect(&timer_, &QTimer::timeout, this, &QueueResendTimer::tick);
}

std::chrono::milliseconds QueueResendTimer::periodOf(const QString& resendTime)
{
    constexpr qint64 kMinute = 60'000;
    constexpr qint64 kLongest = std::numeric_limits<int>::max(); // what a timer takes
    const qint64 minutes
        = std::clamp<qint64>(PrivateProfile::leadingNumber(resendTime.trimmed()), 0, kLongest);
    return std::chrono::milliseconds(
        std::clamp<qint64>(minutes * kMinute, kShortestPeriod.count(), kLongest));
}

std::chrono::milliseconds QueueResendTimer::firstPeriodOf(
    int startQueueProg, const QString& resendTime)
{
    return startQueueProg == 1 ? kFirstRunDelay : periodOf(resendTime);
}

void QueueResendTimer::start()
{
    timer_.start(firstPeriodOf(SettingsStore::get(settings::schedule::kStartQueueProg),
        SettingsStore::get(settings::schedule::kResendTime)));
}

void QueueResendTimer::resendTimeChanged()
{
    const auto next = periodOf(SettingsStore::get(settings::schedule::kResendTime));
    if (timer_.isActive() && next != timer_.intervalAsDuration())
        timer_.start(next);
}

void QueueResendTimer::tick()
{
    // An empty queue says nothing here: message ids::kQueueEmptyOrSending belongs to the send
    // command.
    (void)sender_.sendQueue();
    const auto next = periodOf(SettingsStore::get(settings::schedule::kResendTime));
    if (next != timer_.intervalAsDuration())
        timer_.start(next);
}

} // namespace zelto
