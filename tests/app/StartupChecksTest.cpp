#include "app/StartupChecks.h"

#include "TempSettings.h"
#include "TestFiles.h"
#include "platform/PrivateProfile.h"
#include "platform/StringIds.h"
#include "queue/QueueStore.h"
#include "settings/DataFolders.h"
#include "settings/SettingsStore.h"

#include <QDir>

#include <gtest/gtest.h>

namespace zelto {
namespace {

TEST(StartupChecks, RefusesBadScriptsAndMissingLinks)
{
    test::TempSettings temp;
    const QString root = temp.root();
    QDir().mkpath(root + QStringLiteral("/folder.cmd"));
    for (const QString& file : { root + "/notes.txt", root + "/run.CMD", root + "/run.cmd.bak",
             DataFolders::linkFile(QStringLiteral("nightly")) })
        test::writeFile(file, {});

    const std::pair<const char*, int> scripts[] = { { "/notes.txt", ids::kScriptOpenFailed },
        { "/run.CMD", 0 }, { "/missing.cmd", ids::kScriptOpenFailed },
        { "/run.cmd.bak", ids::kScriptOpenFailed }, { "/folder.cmd", ids::kScriptOpenFailed } };
    for (const auto& [script, refusal] : scripts)
        EXPECT_EQ(StartupChecks::refusal({ root + script, {}, true }), refusal) << script;
    EXPECT_EQ(StartupChecks::refusal({ {}, QStringLiteral("nightly"), true }), 0);
    EXPECT_EQ(StartupChecks::refusal({ {}, QStringLiteral("weekly"), true }), ids::kLinkNotFound);
}

TEST(StartupChecks, EmptyQueueRuleOnlyForChoiceZero)
{
    for (const int choice : { 0, 1, 2 }) {
        test::TempSettings temp;
        const QString queue = QueueStore::defaultFile();
        ASSERT_TRUE(PrivateProfile::writeString(queue, "QUEUE", "NumQueues", "3"));
        ASSERT_TRUE(PrivateProfile::writeString(queue, "QUEUE1", "LocalFile", "a.txt"));
        SettingsStore::set(settings::schedule::kStartQueueProg, choice);

        StartupChecks::applyQueueStartRule();

        EXPECT_EQ(PrivateProfile::getString(queue, "QUEUE", "NumQueues", {}), choice ? "3" : "0");
        EXPECT_EQ(PrivateProfile::getString(queue, "QUEUE1", "LocalFile", {}), "a.txt");
    }
}

} // namespace
} // namespace zelto
