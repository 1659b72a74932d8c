#pragma once

#include "scheduler/ScheduleEntry.h"

#include <QDateTime>
#include <QString>

namespace zelto {

// A moment as the schedule words name it: a date, its weekday, an hour and a minute. The
// configurator makes an entry's date and time words from the user's choice; the due test makes
// from "now" the words an entry must hold to be due. Each frequency is a string id
// (ids::kFrequencyOnce ... ids::kFrequencyYearly), its word the string table's.
struct ScheduleChoice {
    int day = 1; // 1-31
    int month = 1; // 1-12
    int year = 2000;
    int weekday = 0; // 0 Sunday ... 6 Saturday
    int hour = 0; // 0-23
    int minute = 0; // 0-59

    [[nodiscard]] static ScheduleChoice at(const QDateTime& moment);

    // DD/MM/YYYY for "Once" and "Today", "----" for "Hourly" and "Daily", the weekday's name for
    // "Weekly", DD/--/-- for "Monthly", DD/MM/-- for "Yearly"; empty for an unknown id.
    [[nodiscard]] QString dateWord(int frequency) const;
    // HH:MM, or --:MM for "Hourly".
    [[nodiscard]] QString timeWord(int frequency) const;
    // A new entry of `name`, switched on.
    [[nodiscard]] ScheduleEntry entry(const QString& name, int frequency) const;
    // "Once" and "Today" at or before the minute of `now` (the current minute counts as past);
    // the others repeat and are never past.
    [[nodiscard]] bool inPast(int frequency, const QDateTime& now) const;

    // The frequency's string id for a stored word, or 0 for a word that is none of them.
    [[nodiscard]] static int frequencyOf(const QString& word);
    // Why a stored entry could not have been made by the configurator (an unknown frequency, a
    // date or time word of the wrong form, a state neither "On" nor "Off"); empty when it is
    // well formed. Such an entry is never due.
    [[nodiscard]] static QString faultOf(const ScheduleEntry& entry);
};

} // namespace zelto
