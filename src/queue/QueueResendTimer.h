#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>

namespace zelto {

class QueueSender;

// The queue resend timer (1001 of the hidden scheduler window): the queue is sent again every
// ResendTime minutes, the first time 5 seconds after start-up when StartQueueProg is 1. A changed
// ResendTime takes effect after the next send, or at once through resendTimeChanged().
class QueueResendTimer final : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds kFirstRunDelay { 5000 };
    // The shortest period a timer has; ResendTime "0" or "abc" gives it.
    static constexpr std::chrono::milliseconds kShortestPeriod { 10 };

    explicit QueueResendTimer(QueueSender& sender, QObject* parent = nullptr);

    // Reads StartQueueProg and ResendTime and arms the timer.
    void start();
    // Takes a changed ResendTime at once: the next send is one new period from now.
    void resendTimeChanged();
    [[nodiscard]] std::chrono::milliseconds period() const { return timer_.intervalAsDuration(); }

    // The minutes of `resendTime` (its leading number, as atoi reads it) in milliseconds.
    [[nodiscard]] static std::chrono::milliseconds periodOf(const QString& resendTime);
    [[nodiscard]] static std::chrono::milliseconds firstPeriodOf(
        int startQueueProg, const QString& resendTime);

private:
    void tick();

    QueueSender& sender_;
    QTimer timer_;
};

} // namespace zelto
