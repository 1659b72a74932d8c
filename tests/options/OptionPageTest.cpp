#include "options/OptionPage.h"

#include "TempSettings.h"
#include "platform/StringIds.h"
#include "settings/SettingsStore.h"

#include <gtest/gtest.h>

#include <functional>

namespace zelto {
namespace {

using namespace settings;

bool stored(const char* section, const char* key)
{
    return SettingsStore::getText(
               QLatin1StringView(section), QLatin1StringView(key), QStringLiteral("absent"))
        != QLatin1StringView("absent");
}

TEST(OptionPage, LogFileNameIsNormalisedStoredAndGivenBack)
{
    const std::pair<const char*, const char*> cases[]
        = { { "report.txt", "report.log" }, { "a.b.c", "a.log" }, { "report", "report.log" },
              { ".x", ".x.log" }, { "report.log", "report.log" } };
    for (const auto& [typed, expected] : cases) {
        test::TempSettings temp;
        OptionPage page(OptionPageKind::Log);
        page.read();
        page.setValue(log::kToFilePage.name, QStringLiteral("YES"));
        page.setValue(log::kFileName.name, QString::fromLatin1(typed));
        EXPECT_EQ(page.confirm(), 0) << typed;
        EXPECT_EQ(page.value(log::kFileName.name), QLatin1StringView(expected)) << typed;
        EXPECT_EQ(SettingsStore::get(log::kFileName), QLatin1StringView(expected)) << typed;
    }
}

// Each page's refusal: its message, and nothing of the page written.
TEST(OptionPage, RefusedPagesWriteNothing)
{
    struct Case {
        OptionPageKind kind;
        std::function<void(OptionPage&)> edit;
        int message;
        TextKey unwritten;
    };
    const auto set = [](const char* key, const char* value) {
        return [key, value](OptionPage& page) { page.setValue(key, QString::fromLatin1(value)); };
    };
    const Case cases[] = {
        { OptionPageKind::Ftp, set(config::kEmail.name, "  "), ids::kEmailRequired,
            ftp::kCachePage },
        { OptionPageKind::Proxies,
            [](OptionPage& page) {
                page.setValue(ftp::kAccessTypePage.name, QStringLiteral("ProxyAccess"));
                page.setValue(ftp::kProxyName.name, QStringLiteral("proxy.example"));
                page.setValue(ftp::kProxyPort.name, QString());
            },
            ids::kCernProxyIncomplete, ftp::kAccessTypePage },
        { OptionPageKind::Proxies,
            [](OptionPage& page) {
                page.setValue(ftp::kAccessTypePage.name, QStringLiteral("ProxyAccess"));
                page.setValue(ftp::kProxyName.name, QString());
            },
            ids::kCernProxyIncomplete, ftp::kProxyName },
        { OptionPageKind::Log,
            [](OptionPage& page) {
                page.setValue(log::kToFilePage.name, QStringLiteral("YES"));
                page.setValue(log::kFileName.name, QString());
            },
            ids::kLogFileNameMissing, log::kView },
    };
    for (const Case& c : cases) {
        test::TempSettings temp;
        OptionPage page(c.kind);
        page.read();
        c.edit(page);
        EXPECT_EQ(page.confirm(), c.message);
        EXPECT_FALSE(stored(c.unwritten.section, c.unwritten.name)) << c.unwritten.name;
    }
}

TEST(OptionPage, QueuePageWithoutTheNumberOfResendsSavesTheRest)
{
    test::TempSettings temp;
    SettingsStore::set(schedule::kResendFreqNum, 3);
    OptionPage page(OptionPageKind::Queue);
    page.read();
    page.setValue(schedule::kResendFreq.name, QStringLiteral("FREQ_NUM"));
    page.setValue(schedule::kResendFreqNum.name, QString());
    page.setValue(schedule::kStartQueueProg.name, QStringLiteral("2"));
    page.setValue(schedule::kResendTime.name, QStringLiteral("15"));
    EXPECT_EQ(page.confirm(), ids::kResendCountMissing);
    EXPECT_EQ(SettingsStore::get(schedule::kResendFreqNum), 3);
    EXPECT_EQ(SettingsStore::get(schedule::kStartQueueProg), 2);
    EXPECT_EQ(SettingsStore::get(schedule::kResendTimePage), QStringLiteral("15"));
    EXPECT_EQ(SettingsStore::get(schedule::kResendFreq), QStringLiteral("FREQ_NUM"));
}

// Garbage in the store reads as the page's defaults; numbers that are not numbers store 0.
TEST(OptionPage, GarbageReadsAsDefaultsAndTextStoresZero)
{
    test::TempSettings temp;
    SettingsStore::writeText(
        QStringLiteral("FTP"), QStringLiteral("ConnectTo"), QStringLiteral("abc"));
    SettingsStore::writeText(QStringLiteral("FTP"), QStringLiteral("Retry"), QStringLiteral("9x"));
    OptionPage page(OptionPageKind::Ftp);
    page.read();
    EXPECT_EQ(page.value(ftp::kConnectTo.name), QStringLiteral("20"));
    EXPECT_EQ(page.value(ftp::kRetry.name), QStringLiteral("2"));
    EXPECT_EQ(page.value(ftp::kCachePage.name), QStringLiteral("YES"));
    page.setValue(config::kEmail.name, QStringLiteral("me@example.com"));
    page.setValue(ftp::kRetry.name, QStringLiteral("many"));
    EXPECT_EQ(page.confirm(), 0);
    EXPECT_EQ(SettingsStore::get(ftp::kRetry), 0);
    EXPECT_EQ(SettingsStore::get(ftp::kConnectTo), 20);
}

} // namespace
} // namespace zelto
