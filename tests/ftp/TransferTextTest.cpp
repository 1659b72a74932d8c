#include "ftp/ProgressText.h"

#include <gtest/gtest.h>

#include <limits>

namespace zelto {
namespace {

constexpr qint64 kFiveGiB = 5LL * 1024 * 1024 * 1024;

TEST(ProgressText, FormatDurationKeepsSinglePrecisionRounding)
{
    const std::pair<double, const char*> cases[] = {
        { 0, "0 secs" },
        { 59.6, "60 secs" }, // rounded by the format, still the seconds form
        { 60, "1 min 0 secs" },
        { 119.99999, "2 min 59 secs" }, // single precision rounds into the next minute
        { 3599, "59 min 59 secs" },
        { 3600, "1 hr 0 min 0 secs" },
        { 90061, "25 hr 1 min 1 secs" },
    };
    for (const auto& [seconds, text] : cases)
        EXPECT_EQ(ProgressText::formatDuration(seconds), QLatin1String(text)) << seconds;
}

TEST(ProgressText, FormatCountGroupsDigits)
{
    const std::pair<qint64, const char*> cases[] = { { 0, "" }, { 999, "999" }, { 1000, "1,000" },
        { kFiveGiB, "5,368,709,120" }, { -1234, "-1,234" },
        { std::numeric_limits<qint64>::max(), "9,223,372,036,854,775,807" },
        { std::numeric_limits<qint64>::min(), "-9,223,372,036,854,775,808" } };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(ProgressText::formatCount(value), QLatin1String(text)) << value;
}

TEST(ProgressText, TimeLeftInItsThreeForms)
{
    const std::pair<double, const char*> cases[] = { { 0, "Left: 0.00 secs" },
        { 12.345, "Left: 12.35 secs" }, { 60, "Left: 60.00 secs" }, { 60.5, "Left: 01:00" },
        { 3599.9, "Left: 59:59" }, { 3600, "Left: 60:00" }, { 3600.5, "Left: 01:00:00" },
        { 3660, "Left: 01:00:60" }, // 60 s into the hour: 0 minutes and 60 seconds
        { 3661, "Left: 01:01:01" }, { 360000, "Left: 100:00:00" } };
    for (const auto& [seconds, text] : cases)
        EXPECT_EQ(ProgressText::timeLeftText(seconds), QLatin1String(text)) << seconds;
}

TEST(ProgressText, BytesTextCarriesSixtyFourBitCounts)
{
    EXPECT_EQ(ProgressText::bytesText(1, 3), QLatin1String("Sent 1 bytes out of 3 (33.33%)"));
    EXPECT_EQ(ProgressText::bytesText(0, 0), QLatin1String("Sent 0 bytes out of 0 (0.00%)"));
    EXPECT_EQ(ProgressText::bytesText(4LL * 1024 * 1024 * 1024, kFiveGiB),
        QLatin1String("Sent 4294967296 bytes out of 5368709120 (80.00%)"));
}

} // namespace
} // namespace zelto
