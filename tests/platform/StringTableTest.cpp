#include "platform/StringTable.h"

#include "platform/StringIds.h"

#include <QByteArray>
#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace zelto {
namespace {

// Every library error code that has a message; all others in 12001-12144 have none.
const std::vector<int> kCodesWithMessage = [] {
    std::vector<int> codes;
    for (const auto& [first, last] :
        { std::pair { 12001, 12040 }, { 12098, 12099 }, { 12118, 12130 }, { 12142, 12144 } }) {
        for (int code = first; code <= last; ++code)
            codes.push_back(code);
    }
    return codes;
}();

// Texts whose oddities are easy to "fix" by mistake; the log files and message boxes keep them.
TEST(StringTableTest, IrregularTextsAreKeptByteForByte)
{
    const std::pair<int, const char*> cases[] = {
        { StringTable::errorMessageId(12007), "The server name could not be resolved.\n" },
        { StringTable::errorMessageId(12014),
            "The request to connect to and log on to an FTP server  failed." },
        { StringTable::errorMessageId(12099),
            "The FTP operation was not completed because the session \nwas aborted." },
        { ids::kTitleTransferFrom, "FTP Transfer from:" },
        { ids::kMonthFebruary, "Febuary" },
        { ids::kBadLogFileFormat,
            "Bad log file format. Logging is turned off.\nPlease change file name in Log "
            "Configurator. " },
        { ids::kScriptOpenFailed, "Could not open Zelto Script file, exiting ...." },
    };
    for (const auto& [id, bytes] : cases) {
        SCOPED_TRACE(id);
        EXPECT_EQ(StringTable::text(id).toUtf8(), QByteArray(bytes));
    }
}

// Walks the whole code range: a listed code must have a text, and no other code may have one
// (a mistyped id would land on a hole and silently give an unrelated code a message).
TEST(StringTableTest, ExactlyTheListedErrorCodesHaveMessages)
{
    for (int code = 12001; code <= 12144; ++code) {
        SCOPED_TRACE(code);
        const bool listed = std::find(kCodesWithMessage.begin(), kCodesWithMessage.end(), code)
            != kCodesWithMessage.end();
        EXPECT_EQ(StringTable::errorMessage(code).isEmpty(), !listed);
    }
}

} // namespace
} // namespace zelto
