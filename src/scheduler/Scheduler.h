#pragma once

#include <QDateTime>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>

namespace zelto {

// The scheduler's timer on the thread that owns it (the user interface's): once switched on, it
// checks the schedule entries 5 seconds later and then once a minute, and starts each due entry
// through its owner: a command script by its path, anything else as a link by its name. It keeps
// no memory of what it started; a minute that the timer misses (a busy or sleeping machine) is
// not caught up.
class Scheduler final {
public:
    static constexpr std::chrono::milliseconds kFirstPeriod { 5000 };
    static constexpr std::chrono::milliseconds kPeriod { 60'000 };

    // How the owner starts the work: the script runner and the link run are its own.
    struct Starts {
        std::function<void(const QString& scriptPath)> script;
        std::function<void(const QString& linkName)> link;
    };
    using Clock = std::function<QDateTime()>;

    explicit Scheduler(Starts starts, Clock clock = &QDateTime::currentDateTime);
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;

    // "Scheduler" in CONFIG: on for any value other than "NO", off when absent. The menu
    // command that switches the scheduler writes "YES" or "NO" there.
    [[nodiscard]] static bool onInSettings();

    // On: the first check kFirstPeriod from now. Off: no further check.
    void setScheduler(bool on);
    [[nodiscard]] bool isOn() const { return timer_.isActive(); }
    // The period in force: kFirstPeriod until the first check after switching on, then kPeriod.
    [[nodiscard]] std::chrono::milliseconds period() const { return timer_.intervalAsDuration(); }

    // The timer's tick (public so that it can be driven without waiting): a check, then the
    // period of a minute. Nothing while the scheduler is off.
    void tick();
    // Reads the entries and starts those due at the clock's "now", in their order.
    void checkSchedule();

private:
    Starts starts_;
    Clock clock_;
    QTimer timer_;
};

} // namespace zelto
