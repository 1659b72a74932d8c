#include "options/ui/QtSoundPlayer.h"

#include "TestFiles.h"
#include "TestWait.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>

namespace zelto {
namespace {

// Missing, empty and undecodable files, from the UI thread and from a worker, maybe with no audio
// device at all: nothing crashes, nothing waits.
TEST(QtSoundPlayer, PlaysOrStaysSilentWithoutBlocking)
{
    test::EventLoop loop;
    QTemporaryDir dir;
    const QString bad = dir.filePath(QStringLiteral("bad.wav"));
    ASSERT_TRUE(test::makeFile(bad, 4096, 1)); // noise, not a wave
    {
        QtSoundPlayer player;
        std::jthread([&] { player.playFile(bad); }).join();
        bool reached = false; // queued behind the worker's request
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [&] { reached = true; }, Qt::QueuedConnection);
        EXPECT_TRUE(test::waitUntil([&] { return reached; }, std::chrono::seconds(10)));
        // The last is still loading when the player goes.
        for (const QString& path : { dir.filePath(QStringLiteral("none.wav")), QString(), bad })
            player.playFile(path);
    }
}

} // namespace
} // namespace zelto
