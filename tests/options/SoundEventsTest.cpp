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
    struct Case {
        SoundEvent event;
        const settings::TextKey* key;
        const char* stored; // nullptr: absent
        QStringList handed;
    };
    for (const Case& c : {
             Case { SoundEvent::ConnectOk, &kConnectOk, nullptr, {} },
             Case { SoundEvent::ConnectOk, &kConnectOk, "", { QString() } },
             Case { SoundEvent::ConnectFail, &kConnectFail, "a.wav", { "a.wav" } },
             Case { SoundEvent::TransferOk, &kTransferOk, "NotFound", {} }, // player's
             Case { SoundEvent::TransferFail, &kTransferFail, "NOT_FOUND", { "NOT_FOUND" } },
         }) {
        test::TempSettings temp;
        if (c.stored)
            SettingsStore::set(*c.key, QString::fromLatin1(c.stored));
        RecordingPlayer player;
        SoundEvents(player).play(c.event);
        EXPECT_EQ(player.played, c.handed) << (c.stored ? c.stored : "absent");
    }
}

TEST(TransferSounds, PerBatchOrPerFile)
{
    struct Case {
        const char* type; // nullptr: absent
        QList<bool> files;
        QStringList expected;
    };
    for (const Case& c : {
             Case { nullptr, { true, false, true }, { "fail.wav" } }, // absent: batch
             Case { "BATCH", {}, { "ok.wav" } },
             Case { "FILE", { true, false, true }, { "ok.wav", "fail.wav", "ok.wav" } },
             Case { "batch", { false, true }, { "fail.wav", "ok.wav" } }, // only BATCH is batch
         }) {
        test::TempSettings temp;
        SettingsStore::set(kTransferOk, QStringLiteral("ok.wav"));
        SettingsStore::set(kTransferFail, QStringLiteral("fail.wav"));
        if (c.type)
            SettingsStore::set(kTransferType, QString::fromLatin1(c.type));
        RecordingPlayer player;
        SoundEvents sounds(player);
        TransferSounds run(sounds);
        for (bool sent : c.files)
            run.fileDone(sent);
        run.runEnded();
        EXPECT_EQ(player.played, c.expected) << (c.type ? c.type : "absent");
    }
}

} // namespace
} // namespace zelto
