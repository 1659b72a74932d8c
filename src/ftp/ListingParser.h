#pragma once

#include "ftp/RemoteEntry.h"

#include <QByteArrayView>
#include <QDateTime>

#include <optional>

namespace zelto {

// Reads the lines of a folder listing: MLSD's facts, or LIST in the Unix ("ls -l") and DOS
// formats. Each line costs its length and no more, whatever it holds.
class ListingParser final {
public:
    enum class Format { Mlsd, List };

    // `now` dates the Unix lines that give no year: the most recent such day not after it.
    ListingParser(Format format, QDateTime now);

    // The entry of one line (its line end may still be on it); none for a line of no known
    // format, for "." and "..", and for MLSD's entries of the folder itself and its parent.
    [[nodiscard]] std::optional<RemoteEntry> parse(QByteArrayView line) const;

private:
    [[nodiscard]] std::optional<RemoteEntry> parseMlsd(const QString& line) const;
    [[nodiscard]] std::optional<RemoteEntry> parseUnix(const QString& line) const;
    [[nodiscard]] static std::optional<RemoteEntry> parseDos(const QString& line);
    // The time of a Unix line's month (1-12, 0 unknown), day and "hh:mm" or year.
    [[nodiscard]] QDateTime unixTime(int month, int day, QStringView timeOrYear) const;

    Format format_;
    QDateTime now_;
};

} // namespace zelto
