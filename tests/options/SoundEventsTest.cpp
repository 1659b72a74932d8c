#include "options/SoundEvents.h"

#include "TempSettings.h"
#include "app/SettingsStore.h"
#include "options/SoundPlayer.h"
#include "options/TransferSounds.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace zelto {
namespace {

class RecordingPlayer final : public SoundPlayer {
public:
    void playFile(const QString& path) override { played.append(path); }
    QStringList played;
};

TEST(SoundEvents, OnlyAnAbsentKeyStaysSilent)
{
    struct Case {
        const char* name;
        std::optional<QString> stored;
        std::optional<QString> handed; // what reaches the player, if anything
    };
    for (const Case& c : {
             Case { "absent", std::nullopt, std::nullopt },
             Case { "empty", QString(), QString() },
             Case { "a file", QStringLiteral("/snd/ok.wav"), QStringLiteral("/snd/ok.wav") },
             // The player's sentinel, as if stored: silent. The page's sentinel is just a text.
             Case { "player sentinel", QStringLiteral("NotFound"), std::nullopt },
             Case { "page sentinel", QStringLiteral("NOT_FOUND"), QStringLiteral("NOT_FOUND") },
         }) {
        SCOPED_TRACE(c.name);
        test::TempSettings temp;
        if (c.stored)
            SettingsStore::set(settings::sounds::kConnectOk, *c.stored);
        RecordingPlayer player;
        SoundEvents sounds(player);
        sounds.play(SoundEvent::ConnectOk);
        EXPECT_EQ(player.played, c.handed ? QStringList { *c.handed } : QStringList());
    }
}

TEST(SoundEvents, EachEventReadsItsOwnKey)
{
    test::TempSettings temp;
    SettingsStore::set(settings::sounds::kConnectOk, QStringLiteral("connect-ok"));
    SettingsStore::set(settings::sounds::kConnectFail, QStringLiteral("connect-fail"));
    SettingsStore::set(settings::sounds::kTransferOk, QStringLiteral("transfer-ok"));
    SettingsStore::set(settings::sounds::kTransferFail, QStringLiteral("transfer-fail"));
    RecordingPlayer player;
    SoundEvents sounds(player);
    for (SoundEvent event : { SoundEvent::ConnectOk, SoundEvent::ConnectFail,
             SoundEvent::TransferOk, SoundEvent::TransferFail })
        sounds.play(event);
    EXPECT_EQ(player.played,
        QStringList({ "connect-ok", "connect-fail", "transfer-ok", "transfer-fail" }));
}

TEST(TransferSounds, PerBatchOrPerFile)
{
    struct Case {
        const char* name;
        std::optional<const char*> transferType;
        std::vector<bool> files;
        QStringList expected;
    };
    for (const Case& c : {
             Case { "absent means batch: one failure", std::nullopt, { true, false, true },
                 { "fail.wav" } },
             Case { "batch, all sent", "BATCH", { true, true }, { "ok.wav" } },
             Case { "batch, no files", "BATCH", {}, { "ok.wav" } },
             Case { "batch, failure then success", "BATCH", { false, true }, { "fail.wav" } },
             Case { "per file", "FILE", { true, false, true }, { "ok.wav", "fail.wav", "ok.wav" } },
             Case { "only exact BATCH is batch", "batch", { false }, { "fail.wav" } },
         }) {
        SCOPED_TRACE(c.name);
        test::TempSettings temp;
        SettingsStore::set(settings::sounds::kTransferOk, QStringLiteral("ok.wav"));
        SettingsStore::set(settings::sounds::kTransferFail, QStringLiteral("fail.wav"));
        if (c.transferType)
            SettingsStore::set(
                settings::sounds::kTransferType, QString::fromLatin1(*c.transferType));
        RecordingPlayer player;
        SoundEvents sounds(player);
        TransferSounds run(sounds);
        for (bool sent : c.files)
            run.fileDone(sent);
        run.runEnded();
        EXPECT_EQ(player.played, c.expected);
    }
}

TEST(TransferSounds, ChoiceIsReadAtTheStartOfTheRun)
{
    test::TempSettings temp;
    SettingsStore::set(settings::sounds::kTransferOk, QStringLiteral("ok.wav"));
    RecordingPlayer player;
    SoundEvents sounds(player);
    TransferSounds run(sounds);
    SettingsStore::set(settings::sounds::kTransferType, QStringLiteral("FILE"));
    run.fileDone(true);
    EXPECT_TRUE(player.played.isEmpty());
    run.runEnded();
    EXPECT_EQ(player.played, QStringList { "ok.wav" });
}

} // namespace
} // namespace zelto
