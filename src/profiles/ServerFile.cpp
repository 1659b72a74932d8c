#include "ServerFile.h"

#include "platform/ServerFileHeader.h"
#include "profiles/StoredFormats.h"

#include <QFile>

namespace zelto {

std::optional<QByteArray> ServerFile::body(const QString& file)
{
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray text = in.readAll();
    if (const qsizetype nul = text.indexOf('\0'); nul >= 0)
        text.truncate(nul);
    if (!text.startsWith(kServerFileHeader))
        return std::nullopt;
    const qsizetype lineFeed = text.indexOf('\n');
    return lineFeed < 0 ? QByteArray() : text.mid(lineFeed + 1);
}

} // namespace zelto
