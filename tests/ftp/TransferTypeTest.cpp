#include "ftp/TransferType.h"

#include "TempSettings.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <gtest/gtest.h>

#include <optional>

namespace zelto {
namespace {

TEST(TransferType, ChosenBySettingThenFirstDotExtension)
{
    const std::optional<QString> unset;
    const struct {
        std::optional<QString> forced; // FTP TransferType
        std::optional<QString> extensions; // CONFIG TextExtensions
        const char* name;
        bool honour;
        TransferType expected;
    } cases[] = {
        { QStringLiteral("AUTO"), QStringLiteral("txt"), "README", true, TransferType::Binary },
        { unset, QStringLiteral("htm,txt"), "notes.TXT", false, TransferType::Text },
        { unset, QStringLiteral("gz"), "a.tar.gz", false, TransferType::Binary },
        { unset, QStringLiteral("tar.gz"), "a.tar.gz", false, TransferType::Text },
        { unset, QStringLiteral("txt, htm"), "page.htm", false, TransferType::Binary },
        { unset, unset, "notes.txt", false, TransferType::Binary },
        { unset, QStringLiteral("NotFound"), "a.NotFound", false, TransferType::Binary },
        { unset, QStringLiteral(""), "notes.txt", false, TransferType::Binary },
        { unset, QStringLiteral("txt,"), "name.", false, TransferType::Binary },
        { QStringLiteral("BINARY"), QStringLiteral("txt"), "notes.txt", true,
            TransferType::Binary },
        { QStringLiteral("BINARY"), QStringLiteral("txt"), "notes.txt", false, TransferType::Text },
        { QStringLiteral("TEXT"), unset, "image.png", true, TransferType::Text },
        { QStringLiteral("text"), QStringLiteral("txt"), "image.png", true, TransferType::Binary },
        // Only the last part of a path is the name: the folder's dot does not count.
        { unset, QStringLiteral("txt"), "/srv/v1.2/notes.txt", false, TransferType::Text },
        { unset, QStringLiteral("2/README"), "/srv/v1.2/README", false, TransferType::Binary },
        { unset, QStringLiteral("txt"), "C:\\data.d\\notes.txt", false, TransferType::Text },
    };
    for (const auto& c : cases) {
        test::TempSettings temp;
        if (c.forced)
            SettingsStore::set(settings::ftp::kTransferType, *c.forced);
        if (c.extensions)
            SettingsStore::set(settings::config::kTextExtensions, *c.extensions);
        EXPECT_EQ(transferTypeFor(QString::fromUtf8(c.name), c.honour), c.expected)
            << c.name << " forced=" << c.forced.value_or(QStringLiteral("-")).toStdString()
            << " list=" << c.extensions.value_or(QStringLiteral("-")).toStdString();
    }
}

} // namespace
} // namespace zelto
