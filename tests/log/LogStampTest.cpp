#include "log/LogStamp.h"

#include "log/LogRecord.h"
#include "platform/StringIds.h"

#include <gtest/gtest.h>

namespace zelto {
namespace {

TEST(LogRecord, OutcomeParityAndTheSessionEndMapping)
{
    struct Case {
        int id;
        quint32 storedId;
        qint32 outcome;
        bool succeeded;
    };
    for (const Case& c : {
             Case { ids::kLogFtpConnectionOk, 32861, 0, true },
             Case { ids::kLogFtpConnectionFailed, 32862, 1, false },
             Case { ids::kLogMakeDirectoryFailed, 32874, 13, false },
             Case { ids::kLogFtpConnectionClosed, 32875, 14, true },
             Case { ids::kLogInternetConnectionClosed, 32876, 15, false },
             // Shown with the text of 32876, yet counted from its own id: a success by parity.
             Case { ids::kLogSessionEnded, 32876, 16, true },
         }) {
        LogRecord record;
        record.setMessage(c.id);
        EXPECT_EQ(record.messageId, c.storedId) << c.id;
        EXPECT_EQ(record.outcome, c.outcome) << c.id;
        EXPECT_EQ(record.succeeded(), c.succeeded) << c.id;
        EXPECT_TRUE(record.shownUnder(LogFilter::All));
        EXPECT_EQ(record.shownUnder(LogFilter::Successful), c.succeeded) << c.id;
        EXPECT_EQ(record.shownUnder(LogFilter::Unsuccessful), !c.succeeded) << c.id;
    }
}

QDateTime at(int hour, int minute, int second)
{
    return QDateTime(QDate(1999, 3, 7), QTime(hour, minute, second));
}

TEST(LogStamp, TimeFormats)
{
    struct Case {
        QDateTime now;
        int format;
        const char* expected;
    };
    for (const Case& c : {
             Case { at(0, 5, 0), 0, "00:05" },
             Case { at(0, 5, 0), 1, "00:05:00" },
             Case { at(0, 5, 0), 2, "00:05am" }, // midnight is not folded to 12
             Case { at(0, 5, 0), 3, "00:05:00am" },
             Case { at(12, 30, 0), 0, "12:30" },
             Case { at(12, 30, 0), 1, "12:30:00" },
             Case { at(12, 30, 0), 2, "12:30pm" }, // noon stays 12, already afternoon
             Case { at(12, 30, 0), 3, "12:30:00pm" },
             Case { at(13, 7, 9), 0, "13:07" },
             Case { at(13, 7, 9), 1, "13:07:09" },
             Case { at(13, 7, 9), 2, "01:07pm" },
             Case { at(13, 7, 9), 3, "01:07:09pm" },
             Case { at(13, 7, 9), 4, "13:07" }, // unknown indexes are format 0
             Case { at(13, 7, 9), -1, "13:07" },
         }) {
        EXPECT_EQ(LogStamp::time(c.now, c.format), QString::fromLatin1(c.expected))
            << c.now.toString().toStdString() << " format " << c.format;
    }
}

TEST(LogStamp, DateFormats)
{
    const QDateTime march = at(13, 7, 9);
    const QDateTime december(QDate(2024, 12, 25), QTime(8, 0));
    struct Case {
        QDateTime now;
        int format;
        const char* expected;
    };
    for (const Case& c : {
             Case { march, 0, "07/03/1999" },
             Case { march, 1, "03/07/1999" },
             Case { march, 2, "07/03" },
             Case { march, 3, "03/07" },
             Case { march, 4, "07-Mar-1999" },
             Case { march, 5, "Mar-07-1999" },
             Case { march, 6, "07-Mar-1999" },
             Case { march, 7, "Mar-07" },
             Case { march, 8, "07/03/1999" },
             Case { december, 4, "25-Dec-2024" },
             Case { december, 7, "Dec-25" },
         }) {
        EXPECT_EQ(LogStamp::date(c.now, c.format), QString::fromLatin1(c.expected))
            << c.now.toString().toStdString() << " format " << c.format;
    }
}

} // namespace
} // namespace zelto
