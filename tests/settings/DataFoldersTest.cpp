#include "settings/DataFolders.h"

#include "TempSettings.h"
#include "queue/QueueStore.h"
#include "settings/SettingsStore.h"

#include <QFileInfo>

#include <gtest/gtest.h>

namespace zelto {
namespace {

TEST(DataFolders, EmptyProfilePathMeansOwnerOnlyAppDataFolder)
{
    test::TempSettings temp;
    EXPECT_EQ(DataFolders::base(), temp.appDataDir());
    const QString profiles = DataFolders::profiles();
    ASSERT_TRUE(QFileInfo(profiles).isDir());
    EXPECT_EQ(QFileInfo(profiles).permissions() & (QFile::ReadGroup | QFile::ReadOther),
        QFile::Permissions());

    SettingsStore::set(settings::config::kProfilePath, temp.root() + QStringLiteral("/mine/"));
    EXPECT_EQ(DataFolders::files(), temp.root() + QStringLiteral("/mine/Files"));
    EXPECT_EQ(QueueStore::defaultFile(), temp.appDataDir() + QStringLiteral("/zeltoQue.ini"))
        << "the queue file stays in one place whatever the profile folder";
    SettingsStore::set(settings::config::kDataDir, temp.root() + QStringLiteral("/data files"));
    EXPECT_EQ(QueueStore::defaultFile(), temp.root() + QStringLiteral("/data files/zeltoQue.ini"))
        << "but follows the data folder";
}

TEST(DataFolders, TypedProfileDirectory)
{
    // Typed and stored below the temporary root, and whether the three folders are made there.
    const std::tuple<const char*, const char*, bool> cases[] = {
        { "/Data/Profiles", "/Data", false },
        { "/Data/Profiles/", "/Data", false }, // one trailing character tolerated
        { "/Data\\Profiles", "/Data", false },
        { "/Data/ProfilesXY", "/Data/ProfilesXY", true },
        { "/Data/Profiles/old", "/Data/Profiles/old", true },
        { "/Data", "/Data", true },
    };
    for (const auto& [typedBelow, stored, makesFolders] : cases) {
        test::TempSettings temp;
        const QString typed = temp.root() + QString::fromUtf8(typedBelow);
        DataFolders::storeTypedProfileDirectory(typed);
        EXPECT_EQ(SettingsStore::get(settings::config::kProfilePath),
            temp.root() + QString::fromUtf8(stored))
            << typedBelow;
        for (const char* sub : { "/Profiles", "/Links", "/Files" })
            EXPECT_EQ(QFileInfo(typed + QString::fromLatin1(sub)).isDir(), makesFolders)
                << typedBelow << sub;
    }
}

} // namespace
} // namespace zelto
