#pragma once

#include <QString>

namespace zelto {

// One schedule entry as a "Timer%d" value holds it: five words separated by blanks (name,
// frequency, date, time, state), and a sixth that a reader accepts but nothing uses. Since every
// word ends at a blank, a name with a blank in it does not survive the round trip.
struct ScheduleEntry {
    // The sixth word of a value that has only five (or fewer).
    static constexpr char kNoSixth[] = "B";

    QString name; // a link's name, or a command script's file name ending in "cmd"
    QString frequency; // "Once", "Today", "Hourly", "Daily", "Weekly", "Monthly", "Yearly"
    QString date; // DD/MM/YYYY, "----", a weekday's name, DD/--/-- or DD/MM/--, by frequency
    QString time; // HH:MM, or --:MM for "Hourly"
    QString state; // "On" or "Off"
    QString sixth = QString::fromLatin1(kNoSixth);

    // The words of a stored value: the first six when it has six or more; otherwise the words
    // there are (the missing ones empty) and kNoSixth.
    [[nodiscard]] static ScheduleEntry parse(const QString& value);
    // The value to store: the five words joined by single blanks; the sixth is never written.
    [[nodiscard]] QString format() const;

    bool operator==(const ScheduleEntry&) const = default;
};

} // namespace zelto
