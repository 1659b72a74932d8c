#include "options/SoundEvents.h"

#include "TempSettings.h"
#include "options/SoundPlayer.h"
#include "options/TransferSounds.h"
#include "settings/SettingsStore.h"

#include <gtest/gtest.h>

namespace zelto {
namespace {

using namespace settings::sounds;

struct RecordingPlayer final : SoundPlayer {
    void playFile(const QString& path) override { played.append(path); }
    QStringList played;
};

TEST(SoundEvents, OnlyAnAbsentKeyStaysSilent)
{
    // The event, its key, what the key holds (nullptr: absent), what the player is handed.
    const std::tuple<SoundEvent, const settings::TextKey*, const char*, QStringList> cases[] = {
        { SoundEvent::ConnectOk, &kConnectOk, nullptr, {} },
        { SoundEvent::ConnectOk, &kConnectOk, "", { QString() } },
        { SoundEvent::ConnectFail, &kConnectFail, "a.wav", { "a.wav" } },
        { SoundEvent::TransferOk, &kTransferOk, "NotFound", {} }, // player's
        { SoundEvent::TransferFail, &kTransferFail, "NOT_FOUND", { "NOT_FOUND" } },
    };
    for (const auto& [event, key, stored, handed] : cases) {
        test::TempSettings temp;
        if (stored)
            SettingsStore::set(*key, QString::fromLatin1(stored));
        RecordingPlayer player;
        SoundEvents(player).play(event);
        EXPECT_EQ(player.played, handed) << (stored ? stored : "absent");
    }
}

TEST(TransferSounds, PerBatchOrPerFile)
{
    // The type (nullptr: absent), each file's end, the sounds played.
    const std::tuple<const char*, QList<bool>, QStringList> cases[] = {
        { nullptr, { true, false, true }, { "fail.wav" } }, // absent: batch
        { "BATCH", {}, { "ok.wav" } },
        { "FILE", { true, false, true }, { "ok.wav", "fail.wav", "ok.wav" } },
        { "batch", { false, true }, { "fail.wav", "ok.wav" } }, // only BATCH is batch
    };
    for (const auto& [type, files, expected] : cases) {
        test::TempSettings temp;
        SettingsStore::set(kTransferOk, QStringLiteral("ok.wav"));
        SettingsStore::set(kTransferFail, QStringLiteral("fail.wav"));
        if (type)
            SettingsStore::set(kTransferType, QString::fromLatin1(type));
        RecordingPlayer player;
        SoundEvents sounds(player);
        TransferSounds run(sounds);
        for (bool sent : files)
            run.fileDone(sent);
        run.runEnded();
        EXPECT_EQ(player.played, expected) << (type ? type : "absent");
    }
}

} // namespace
} // namespace zelto
