#include "ProgressText.h"

#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QByteArray>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <variant>

namespace zelto {
namespace {

// Texts without a resource id.
constexpr char kRateFormat[] = "%.2f kbs";
constexpr char kHoursFormat[] = "%lld hr %lld min %lld secs";
constexpr char kMinutesFormat[] = "%lld min %lld secs";
constexpr char kSecondsFormat[] = "%.0f secs";

// Single-precision reciprocals of 3600 and 60; see formatDuration.
constexpr float kPerHour = 0.00027777778f;
constexpr float kPerMinute = 0.016666668f;

using Argument = std::variant<qint64, double>;

// Fills a printf-style pattern from the string table with typed values. The conversion letter of
// each directive only chooses integer or floating output; the value is always passed as the type
// asprintf expects for the rewritten directive, so a pattern edited in the table can change the
// text but never read a value of the wrong size (a "%ld" takes a 64-bit value on every platform).
// Directives without a value, and kinds other than integer and floating, stay as they are.
QString fill(const QString& pattern, std::initializer_list<Argument> arguments)
{
    static const QString kFlags = QStringLiteral("-+ #0");
    static const QString kLengths = QStringLiteral("hlLqjzt");
    static const QString kIntegers = QStringLiteral("di");
    static const QString kFloats = QStringLiteral("fFeEgG");

    QString text;
    text.reserve(pattern.size() + 32);
    auto next = arguments.begin();
    const qsizetype size = pattern.size();
    for (qsizetype i = 0; i < size;) {
        const QChar c = pattern[i];
        if (c != QLatin1Char('%') || i + 1 >= size) {
            text += c;
            ++i;
            continue;
        }
        if (pattern[i + 1] == QLatin1Char('%')) {
            text += c;
            i += 2;
            continue;
        }
        qsizetype end = i + 1;
        QByteArray directive("%");
        while (end < size && kFlags.contains(pattern[end]))
            directive += pattern[end++].toLatin1();
        while (end < size && pattern[end].isDigit())
            directive += pattern[end++].toLatin1();
        if (end < size && pattern[end] == QLatin1Char('.')) {
            directive += pattern[end++].toLatin1();
            while (end < size && pattern[end].isDigit())
                directive += pattern[end++].toLatin1();
        }
        while (end < size && kLengths.contains(pattern[end]))
            ++end;
        const QChar kind = end < size ? pattern[end] : QChar();
        const bool integer = kIntegers.contains(kind);
        const bool floating = kFloats.contains(kind);
        if ((!integer && !floating) || next == arguments.end()) {
            text += pattern.mid(i, end + 1 - i);
            i = end + 1;
            continue;
        }
        const Argument value = *next++;
        if (integer) {
            const qint64 number = std::holds_alternative<qint64>(value)
                ? std::get<qint64>(value)
                : static_cast<qint64>(std::get<double>(value));
            text += QString::asprintf((directive + "lld").constData(), qlonglong(number));
        } else {
            const double number = std::holds_alternative<double>(value)
                ? std::get<double>(value)
                : static_cast<double>(std::get<qint64>(value));
            directive += kind.toLatin1();
            text += QString::asprintf(directive.constData(), number);
        }
        i = end + 1;
    }
    return text;
}

} // namespace

QString ProgressText::bytesText(qint64 moved, qint64 total)
{
    const double percent = total > 0 ? static_cast<double>(moved) * 100.0 / total : 0.0;
    return fill(StringTable::text(ids::kBytesProgress), { moved, total, percent });
}

double ProgressText::rateKbs(qint64 bytes, qint64 elapsedSeconds)
{
    return static_cast<double>(bytes) / static_cast<double>(std::max<qint64>(elapsedSeconds, 1))
        * 0.001;
}

QString ProgressText::rateText(double kbs)
{
    return QString::asprintf(kRateFormat, kbs);
}

double ProgressText::remainingSeconds(qint64 total, qint64 done, qint64 elapsedSeconds)
{
    if (done <= 0)
        return 0.0;
    return static_cast<double>(total - done)
        * (static_cast<double>(elapsedSeconds) / static_cast<double>(done));
}

QString ProgressText::timeLeftText(double seconds)
{
    if (std::isnan(seconds))
        seconds = 0.0;
    if (seconds <= 60.0)
        return fill(StringTable::text(ids::kTimeLeftSeconds), { seconds });
    // Far beyond any real transfer; keeps the conversion to whole seconds defined.
    const auto whole = static_cast<qint64>(std::min(seconds, 1e15));
    if (seconds <= 3600.0)
        return fill(StringTable::text(ids::kTimeLeftMinutes), { whole / 60, whole % 60 });
    const qint64 hours = whole / 3600;
    const qint64 withinHour = whole % 3600;
    qint64 minutes = 0;
    qint64 rest = withinHour;
    if (withinHour >= 61) {
        minutes = withinHour / 60;
        rest = whole - 3600 * hours - 60 * minutes;
    }
    return fill(StringTable::text(ids::kTimeLeftHours), { hours, minutes, rest });
}

QString ProgressText::formatDuration(double seconds)
{
    const auto t = static_cast<float>(seconds);
    if (t >= 3600.0f) {
        const auto hours = static_cast<qint64>(t * kPerHour);
        const float rest = t - static_cast<float>(hours) * 3600.0f;
        const auto minutes = static_cast<qint64>(rest * kPerMinute);
        const auto secs = static_cast<qint64>(rest - static_cast<float>(minutes) * 60.0f);
        return QString::asprintf(
            kHoursFormat, qlonglong(hours), qlonglong(minutes), qlonglong(secs));
    }
    if (t < 60.0f)
        return QString::asprintf(kSecondsFormat, static_cast<double>(t));
    const auto minutes = static_cast<qint64>(t * kPerMinute);
    const qint64 secs = static_cast<qint64>(t) % 60;
    return QString::asprintf(kMinutesFormat, qlonglong(minutes), qlonglong(secs));
}

QString ProgressText::formatCount(qint64 value)
{
    if (value == 0)
        return {};
    // Unsigned, so that the most negative value has a magnitude too.
    quint64 magnitude = value < 0 ? 0 - static_cast<quint64>(value) : static_cast<quint64>(value);
    char digits[32];
    char* end = digits + sizeof digits;
    char* at = end;
    int inGroup = 0;
    while (magnitude != 0) {
        if (inGroup == 3) {
            *--at = ',';
            inGroup = 0;
        }
        *--at = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
        ++inGroup;
    }
    if (value < 0)
        *--at = '-';
    return QString::fromLatin1(at, end - at);
}

} // namespace zelto
