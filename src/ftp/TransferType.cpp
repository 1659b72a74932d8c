#include "TransferType.h"

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QStringTokenizer>
#include <QStringView>

#include <algorithm>

namespace zelto {
namespace {

QStringView namePart(const QString& path)
{
    const qsizetype separator
        = std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\')));
    return QStringView(path).mid(separator + 1);
}

} // namespace

TransferType transferTypeFor(const QString& fileName, bool honourSetting)
{
    if (honourSetting) {
        const QString forced = SettingsStore::get(settings::ftp::kTransferType);
        if (forced == QLatin1String("BINARY"))
            return TransferType::Binary;
        if (forced == QLatin1String("TEXT"))
            return TransferType::Text;
    }

    const QString list = SettingsStore::get(settings::config::kTextExtensions);
    // Never saved: no file is text.
    if (list == QLatin1String(settings::config::kTextExtensions.fallback))
        return TransferType::Binary;

    const QStringView name = namePart(fileName);
    const qsizetype dot = name.indexOf(QLatin1Char('.'));
    if (dot < 0)
        return TransferType::Binary;
    const QStringView extension = name.mid(dot + 1);

    // Empty items (",," or a trailing ",") never match, not even a name that ends in a dot.
    for (const QStringView item : qTokenize(list, u',', Qt::SkipEmptyParts)) {
        if (item.compare(extension, Qt::CaseInsensitive) == 0)
            return TransferType::Text;
    }
    return TransferType::Binary;
}

} // namespace zelto
