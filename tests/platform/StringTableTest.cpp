#include "platform/StringTable.h"

#include "platform/StringIds.h"

#include <QByteArray>
#include <QLocale>
#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

namespace zelto {
namespace {

// Every library error code that has a message; all others in 12001-12144 have none.
constexpr std::array kCodesWithMessage = {
    12001,
    12002,
    12003,
    12004,
    12005,
    12006,
    12007,
    12008,
    12009,
    12010,
    12011,
    12012,
    12013,
    12014,
    12015,
    12016,
    12017,
    12018,
    12019,
    12020,
    12021,
    12022,
    12023,
    12024,
    12025,
    12026,
    12027,
    12028,
    12029,
    12030,
    12031,
    12032,
    12033,
    12034,
    12035,
    12036,
    12037,
    12038,
    12039,
    12040,
    12098,
    12099,
    12118,
    12119,
    12120,
    12121,
    12122,
    12123,
    12124,
    12125,
    12126,
    12127,
    12128,
    12129,
    12130,
    12142,
    12143,
    12144,
};

struct ExactText {
    int id;
    const char* bytes;
};

// Texts whose oddities are easy to "fix" by mistake; the log files and message boxes keep them.
constexpr ExactText kIrregularErrorMessages[] = {
    { 12007, "The server name could not be resolved.\n" },
    { 12014, "The request to connect to and log on to an FTP server  failed." },
    { 12037,
        "The application is moving from an SSL to an non-SSL\nconnection because of a redirect." },
    { 12040, "The application is posting data to a sever that is not secure." },
    { 12099, "The FTP operation was not completed because the session \nwas aborted." },
    { 12124,
        "The requested operation can only be made against a Gopher+\nserver or with a locator that "
        "specifies a Gopher+  operation." },
    { 12144,
        "The redirection failed because either the scheme changed\n(for example, HTTP to FTP) or "
        "all "
        "attempts made to redirect\nfailed (default is five attempts)." },
};

constexpr ExactText kIrregularTexts[] = {
    { ids::kOleInitFailed,
        "OLE initialization failed.  Make sure that the OLE libraries are the correct version." },
    { ids::kTitlePutTo, "FTP Put to: " },
    { ids::kTitleTransferFrom, "FTP Transfer from:" },
    { ids::kMonthFebruary, "Febuary" },
    { ids::kBadLogFileFormat,
        "Bad log file format. Logging is turned off.\nPlease change file name in Log "
        "Configurator. " },
    { ids::kFolderNotRenamed,
        "Folder was not renamed.\n A folder with the wanted name already exists." },
    { ids::kScriptOpenFailed, "Could not open Zelto Script file, exiting ...." },
    { ids::kLinkNotFound, "Could not find Zelto link, exiting ..." },
    { ids::kAppTitle, "Zelto v. 2.05" },
    { ids::kConnecting, "Connecting ..." },
    { ids::kConnected, "Connected!" },
};

TEST(StringTableTest, IrregularErrorMessagesAreKeptByteForByte)
{
    for (const auto& [code, bytes] : kIrregularErrorMessages) {
        SCOPED_TRACE(code);
        EXPECT_EQ(StringTable::errorMessage(code).toUtf8(), QByteArray(bytes));
    }
}

TEST(StringTableTest, IrregularTextsAreKeptByteForByte)
{
    for (const auto& [id, bytes] : kIrregularTexts) {
        SCOPED_TRACE(id);
        EXPECT_EQ(StringTable::text(id).toUtf8(), QByteArray(bytes));
    }
}

TEST(StringTableTest, ErrorMessageIsTheTextAtCodePlusOffset)
{
    EXPECT_EQ(StringTable::errorMessageId(12001), 32877);
    EXPECT_EQ(StringTable::errorMessage(12001), StringTable::text(32877));
    EXPECT_EQ(StringTable::errorMessage(12001),
        QStringLiteral("No more handles could be generated at this time."));
}

// Walks the whole code range: a listed code must have a text, and no other code may have one
// (a mistyped id would land on a hole and silently give an unrelated code a message).
TEST(StringTableTest, ExactlyTheListedErrorCodesHaveMessages)
{
    for (int code = 12001; code <= 12144; ++code) {
        SCOPED_TRACE(code);
        const bool listed = std::find(kCodesWithMessage.begin(), kCodesWithMessage.end(), code)
            != kCodesWithMessage.end();
        EXPECT_EQ(StringTable::contains(StringTable::errorMessageId(code)), listed);
        EXPECT_EQ(StringTable::errorMessage(code).isEmpty(), !listed);
    }
}

TEST(StringTableTest, CodeWithoutARowGivesAnEmptyMessage)
{
    EXPECT_FALSE(StringTable::contains(32926));
    EXPECT_TRUE(StringTable::text(32926).isEmpty());
    EXPECT_TRUE(StringTable::errorMessage(12050).isEmpty());
}

TEST(StringTableTest, CommonNameMessageCarriesATwoLineExample)
{
    const QString text = StringTable::errorMessage(12035);
    EXPECT_TRUE(text.startsWith(
        QStringLiteral("SSL certificate common name (host name field) is incorrect.\n")));
    EXPECT_EQ(text.count(QLatin1Char('\n')), 3);
    EXPECT_TRUE(text.endsWith(QLatin1Char('\n')));
}

TEST(StringTableTest, ConnectionStatusAndLogEventTextsResolve)
{
    std::vector<int> wanted
        = { ids::kConnecting, ids::kConnected, ids::kConnectedTo, ids::kRetrievingRemoteFiles };
    for (int id = ids::kLogFtpConnectionOk; id <= ids::kLogInternetConnectionClosed; ++id)
        wanted.push_back(id);
    for (int id : wanted) {
        SCOPED_TRACE(id);
        EXPECT_TRUE(StringTable::contains(id));
        EXPECT_FALSE(StringTable::text(id).isEmpty());
    }
    EXPECT_EQ(StringTable::text(ids::kLogFtpConnectionOk), QStringLiteral("FTP Connection OK"));
    EXPECT_EQ(StringTable::text(ids::kLogInternetConnectionClosed),
        QStringLiteral("Internet Connection Closed"));
}

// The placeholders are printf formats; a lost "%%" or a changed conversion shows up here.
TEST(StringTableTest, FormatTextsKeepTheirPlaceholders)
{
    const auto format = [](int id) { return StringTable::text(id).toUtf8(); };
    EXPECT_EQ(QString::asprintf(format(ids::kBytesProgress).constData(), 512L, 1024L, 50.0),
        QStringLiteral("Sent 512 bytes out of 1024 (50.00%)"));
    EXPECT_EQ(QString::asprintf(format(ids::kTimeLeftHours).constData(), 1, 2, 3),
        QStringLiteral("Left: 01:02:03"));
    EXPECT_EQ(QString::asprintf(format(ids::kTimeLeftMinutes).constData(), 4, 5),
        QStringLiteral("Left: 04:05"));
    EXPECT_EQ(QString::asprintf(format(ids::kTimeLeftSeconds).constData(), 7.5),
        QStringLiteral("Left: 7.50 secs"));
    EXPECT_EQ(QString::asprintf(format(ids::kConfirmRename).constData(), "a.txt", "b.txt"),
        QStringLiteral("About to rename file a.txt to b.txt!\nContinue?"));
}

// Code reaches weekdays and months by offset from the first one, so order and gaps matter.
TEST(StringTableTest, CalendarWordsRunInCalendarOrder)
{
    const QLocale c = QLocale::c();
    for (int weekday = 0; weekday < 7; ++weekday) {
        SCOPED_TRACE(weekday);
        const int qtDay = weekday == 0 ? 7 : weekday;
        EXPECT_EQ(StringTable::text(ids::kWeekdaySunday + weekday), c.dayName(qtDay));
    }
    for (int month = 1; month <= 12; ++month) {
        SCOPED_TRACE(month);
        if (month == 2)
            continue; // spelled "Febuary", checked byte for byte above
        EXPECT_EQ(StringTable::text(ids::kMonthJanuary + month - 1), c.monthName(month));
    }
}

TEST(StringTableTest, UnknownIdsHaveNoText)
{
    for (int id : { 0, -1, 99, 101, 12001, 32860, 33021, 33056, 99999 }) {
        SCOPED_TRACE(id);
        EXPECT_FALSE(StringTable::contains(id));
        EXPECT_TRUE(StringTable::text(id).isEmpty());
    }
}

} // namespace
} // namespace zelto
