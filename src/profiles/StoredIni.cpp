#include "StoredIni.h"

#include "platform/PrivateProfile.h"

#include <algorithm>

namespace zelto {

StoredIni::StoredIni(const QString& file) : document_(PrivateProfile::read(file))
{
}

QString StoredIni::text(
    const QString& section, const QString& key, const QString& fallback, int bufferSize) const
{
    return PrivateProfile::cutToBuffer(
        document_.value(section, key).value_or(fallback), bufferSize);
}

int StoredIni::integer(const QString& section, const QString& key, int fallback) const
{
    return PrivateProfile::toInt(document_.value(section, key), fallback);
}

qint64 StoredIni::number(const QString& section, const QString& key, const QString& fallback) const
{
    return PrivateProfile::leadingNumber(
        document_.value(section, key).value_or(fallback).trimmed());
}

std::vector<int> StoredIni::numberedSections(const QString& prefix, int count) const
{
    std::vector<int> numbers;
    for (const QString& name : document_.sectionNames()) {
        if (!name.startsWith(prefix, Qt::CaseInsensitive))
            continue;
        const QStringView digits = QStringView(name).sliced(prefix.size());
        // "FILE03" is not the section that "FILE%d" names for 3.
        const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
        if (digits.isEmpty() || digits.front() == u'0'
            || !std::all_of(digits.begin(), digits.end(), isDigit))
            continue;
        bool ok = false;
        const int number = digits.toInt(&ok);
        if (ok && number <= count)
            numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

} // namespace zelto
