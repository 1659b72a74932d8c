#include "settings/SettingsStore.h"

#include "TempSettings.h"
#include "TestFiles.h"

#include <QFile>

#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace zelto {
namespace {

using namespace settings;

TEST(SettingsStore, WritesReadBackWithoutCache)
{
    test::TempSettings temp;
    EXPECT_EQ(
        SettingsStore::get(config::kWinState), QString::fromLatin1(config::kWinState.fallback));
    EXPECT_FALSE(QFile::exists(temp.settingsFile())) << "reading must not create the store";
    const QString frame = QString::fromLatin1(geometry::kMainFrame);
    SettingsStore::writeInt(frame, QStringLiteral("Width"), 640);
    SettingsStore::set(config::kWinState, QStringLiteral("ICONIC"));
    SettingsStore::set(ftp::kQuickPasswd, QStringLiteral("pässwörd"));
    EXPECT_EQ(SettingsStore::getInt(frame, QStringLiteral("Width"), 400), 640);
    EXPECT_EQ(SettingsStore::get(config::kWinState), QStringLiteral("ICONIC"));
    EXPECT_EQ(SettingsStore::get(ftp::kQuickPasswd), QStringLiteral("pässwörd"));
    // Numbers are texts to a text reader; a text is no number to an integer reader.
    EXPECT_EQ(SettingsStore::getText(frame, QStringLiteral("Width"), {}), QStringLiteral("640"));
    EXPECT_EQ(
        SettingsStore::getInt(QLatin1StringView(section::kConfig), QStringLiteral("WinState"), 7),
        7);

    // The store holds a password: owner-only.
    EXPECT_EQ(QFile::permissions(temp.settingsFile()) & 0x0077, QFileDevice::Permissions());
}

TEST(SettingsStore, ThreadThatReadBeforeSeesEveryChangeAtItsNextRead)
{
    // This thread keeps the store open from its first read on; each change comes after that read.
    struct Change {
        const char* what;
        std::function<void(const test::TempSettings&)> make;
        const char* expected;
    };
    const Change changes[] = {
        { "written on another thread",
            [](const test::TempSettings&) {
                std::jthread(
                    [] { SettingsStore::set(config::kWinState, QStringLiteral("MAXIMIZED")); });
            },
            "MAXIMIZED" },
        { "file rewritten by another process",
            [](const test::TempSettings& temp) {
                test::writeFile(temp.settingsFile(), "[CONFIG]\nWinState=MAXIMIZED\n");
            },
            "MAXIMIZED" },
        { "file deleted by another process",
            [](const test::TempSettings& temp) { QFile::remove(temp.settingsFile()); },
            config::kWinState.fallback },
        { "store moved to another folder",
            [](const test::TempSettings& temp) {
                const QString folder = temp.root() + QStringLiteral("/moved");
                test::writeFile(folder + QStringLiteral("/Pellmoor/Zelto.conf"),
                    "[CONFIG]\nWinState=MAXIMIZED\n");
                SettingsStore::relocate(folder);
            },
            "MAXIMIZED" },
    };
    for (const auto& [what, make, expected] : changes) {
        test::TempSettings temp;
        SettingsStore::set(config::kWinState, QStringLiteral("ICONIC"));
        ASSERT_EQ(SettingsStore::get(config::kWinState), QStringLiteral("ICONIC")) << what;
        make(temp);
        EXPECT_EQ(SettingsStore::get(config::kWinState), QString::fromLatin1(expected)) << what;
    }
}

TEST(SettingsStore, DamagedStoreReadsDefaultsAndKeepsReadableKeys)
{
    const QByteArray readable = "[CONFIG]\nWinState=ICONIC\n";
    const std::pair<const char*, QByteArray> damages[] = {
        { "truncated", readable + "[FTP]\nRetr" },
        { "very long line", readable + "Junk=" + QByteArray(10 * 1024 * 1024, 'x') + "\n" },
    };
    for (const auto& [what, bytes] : damages) {
        test::TempSettings temp;
        test::writeFile(temp.settingsFile(), bytes);
        EXPECT_EQ(SettingsStore::get(ftp::kRetry), 2) << what;
        EXPECT_EQ(SettingsStore::get(config::kWinState), QStringLiteral("ICONIC")) << what;
        SettingsStore::set(config::kScheduler, QStringLiteral("YES"));
        EXPECT_EQ(SettingsStore::get(config::kScheduler), QStringLiteral("YES")) << what;
        EXPECT_EQ(SettingsStore::get(config::kWinState), QStringLiteral("ICONIC")) << what;
    }
}

} // namespace
} // namespace zelto
