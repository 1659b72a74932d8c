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

    struct Case {
        QString script;
        QString link;
        int refusal;
    };
    const Case cases[] = {
        { root + QStringLiteral("/notes.txt"), {}, ids::kScriptOpenFailed },
        { root + QStringLiteral("/run.CMD"), {}, 0 },
        { root + QStringLiteral("/missing.cmd"), {}, ids::kScriptOpenFailed },
        { root + QStringLiteral("/run.cmd.bak"), {}, ids::kScriptOpenFailed },
        { root + QStringLiteral("/folder.cmd"), {}, ids::kScriptOpenFailed },
        { {}, QStringLiteral("nightly"), 0 },
        { {}, QStringLiteral("weekly"), ids::kLinkNotFound },
    };
    for (const Case& c : cases) {
        const StartRequest request { c.script, c.link, true };
        EXPECT_EQ(StartupChecks::refusal(request), c.refusal)
            << c.script.toStdString() << c.link.left(20).toStdString();
    }
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
