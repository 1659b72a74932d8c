#include "LogStamp.h"

#include "platform/StringIds.h"
#include "platform/StringTable.h"

namespace zelto {
namespace {

QString twoDigits(int value)
{
    return QStringLiteral("%1").arg(value, 2, 10, QChar(u'0'));
}

// The first three characters of the month's full name; an invalid date has no month name.
QString monthName(int month)
{
    if (month < 1 || month > 12)
        return {};
    return StringTable::text(ids::kMonthJanuary + month - 1).left(3);
}

} // namespace

QString LogStamp::time(const QDateTime& now, int format)
{
    const QTime t = now.time();
    const QString hhmm24 = twoDigits(t.hour()) + u':' + twoDigits(t.minute());
    // Midnight stays "00" and noon "12": only hours above 12 are folded.
    const int hour12 = t.hour() > 12 ? t.hour() - 12 : t.hour();
    const QString suffix = t.hour() >= 12 ? QStringLiteral("pm") : QStringLiteral("am");
    const QString hhmm12 = twoDigits(hour12) + u':' + twoDigits(t.minute());
    const QString seconds = u':' + twoDigits(t.second());
    switch (format) {
    case 1:
        return hhmm24 + seconds;
    case 2:
        return hhmm12 + suffix;
    case 3:
        return hhmm12 + seconds + suffix;
    default:
        return hhmm24;
    }
}

QString LogStamp::date(const QDateTime& now, int format)
{
    const QDate d = now.date();
    const QString day = twoDigits(d.day());
    const QString month = twoDigits(d.month());
    const QString name = monthName(d.month());
    const QString year = QString::number(d.year());
    switch (format) {
    case 1:
        return month + u'/' + day + u'/' + year;
    case 2:
        return day + u'/' + month;
    case 3:
        return month + u'/' + day;
    case 4:
        return day + u'-' + name + u'-' + year;
    case 5:
        return name + u'-' + day + u'-' + year;
    case 6:
        // Labelled "dd-mon", yet its pattern has a third part; the year fills it.
        return day + u'-' + name + u'-' + year;
    case 7:
        return name + u'-' + day;
    default:
        return day + u'/' + month + u'/' + year;
    }
}

} // namespace zelto
