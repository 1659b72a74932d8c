// Reading entries out of the listing formats servers send, whatever a hostile one puts in them.

#include "ftp/ListingParser.h"

#include "ftp/ListingReader.h"

#include <gtest/gtest.h>

namespace zelto::test {
namespace {

using Format = ListingParser::Format;
using Kind = RemoteEntry::Kind;

const QDateTime kNow(QDate(2026, 11, 25), QTime(12, 0), Qt::UTC);

QDateTime at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second), Qt::UTC);
}

TEST(ListingParserTest, LinesOfEveryFormat)
{
    struct Case {
        Format format;
        QByteArray line;
        QString name; // empty: the line gives no entry
        Kind kind = Kind::File;
        qint64 size = -1;
        QDateTime modified {};
    };
    const Case cases[] = {
        { Format::List, "drwxr-xr-x   2 owner    group        4096 Nov 21 17:25 2024\r\n", "2024",
            Kind::Folder, 4096, at(2026, 11, 21, 17, 25) },
        { Format::List, "-rw-r--r--   1 owner    group           1 Jan 01  2024 a.txt", "a.txt",
            Kind::File, 1, at(2024, 1, 1) },
        // Without a year: this year's day, or last year's when it lies ahead of now.
        { Format::List, "-rw-r--r-- 1 o g 12 Dec 24 09:01 last.year", "last.year", Kind::File, 12,
            at(2025, 12, 24, 9, 1) },
        { Format::List, "-rw-r--r--    1 1000     1000          12 Mar  3 09:01 two  blanks",
            "two  blanks", Kind::File, 12, at(2026, 3, 3, 9, 1) },
        { Format::List, "-rw-r--r-- 1 owner 7 Feb 29 2024 nogroup.bin", "nogroup.bin", Kind::File,
            7, at(2024, 2, 29) },
        { Format::List, "-rw-r--r-- 1 owner group7 Feb 29 2024 glued.bin", "glued.bin", Kind::File,
            7, at(2024, 2, 29) },
        { Format::List, "-rw-r--r-- 1 o g 5368709120 Jan 01 2024 five.gib", "five.gib", Kind::File,
            5368709120, at(2024, 1, 1) },
        { Format::List, "-rw-r--r-- 1 o g -5 Jan 01 2024 negative", "negative", Kind::File, -1,
            at(2024, 1, 1) },
        { Format::List, "-rw-r--r-- 1 o g 99999999999999999999 Jan 01 2024 huge", "huge",
            Kind::File, -1, at(2024, 1, 1) },
        { Format::List, "-rw-r--r-- 1 o g 1 Feb 30 2024 bad.date", "bad.date", Kind::File, 1 },
        { Format::List, "-rw-r--r-- 1 o g 1 Okt 03 2024 other.month", "other.month", Kind::File,
            1 },
        { Format::List, "-rw-r--r-- 1 owner group 7 Feb 29 2024", "" },
        { Format::List, "lrwxrwxrwx   1 owner    group           7 Jan 01  2024 link -> a.txt",
            "link", Kind::Link, 7, at(2024, 1, 1) },
        { Format::List, "drwxr-xr-x   2 owner    group        4096 Jan 01  2024 .", "" },
        { Format::List, "11-21-26  05:25PM       <DIR>          Old Reports\r\n", "Old Reports",
            Kind::Folder, -1, at(2026, 11, 21, 17, 25) },
        { Format::List, "11-21-1999  12:05AM              1234 report 1.doc", "report 1.doc",
            Kind::File, 1234, at(1999, 11, 21, 0, 5) },
        { Format::List, "11-21-26  17:25    -3 minus.doc", "minus.doc", Kind::File, -1,
            at(2026, 11, 21, 17, 25) },
        { Format::List, "total 12", "" },
        { Format::Mlsd, "type=file;size=5368709120;modify=20240101123456.789; five gib.bin",
            "five gib.bin", Kind::File, 5368709120, at(2024, 1, 1, 12, 34, 56) },
        { Format::Mlsd, "Type=DIR;Modify=20261121172500;perm=el; sub", "sub", Kind::Folder, -1,
            at(2026, 11, 21, 17, 25) },
        { Format::Mlsd, "type=OS.unix=slink:/etc;size=4; etc", "etc", Kind::Link, 4 },
        { Format::Mlsd, "type=file;size=-1;modify=20241399000000; bad facts", "bad facts",
            Kind::File, -1 },
        { Format::Mlsd, "type=file;size=1; a; b c", "a; b c", Kind::File, 1 },
        { Format::Mlsd, "type=cdir;modify=20240101000000; /pub", "" },
        { Format::Mlsd, "size=1; no type", "" },
        { Format::Mlsd, "-rw-r--r-- 1 o g 1 Jan 01 2024 a unix line", "" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line.toStdString());
        const auto entry = ListingParser(c.format, kNow).parse(c.line);
        if (c.name.isEmpty()) {
            EXPECT_FALSE(entry) << entry->name.toStdString();
            continue;
        }
        ASSERT_TRUE(entry);
        EXPECT_EQ(entry->name, c.name);
        EXPECT_EQ(entry->kind, c.kind);
        EXPECT_EQ(entry->size, c.size);
        EXPECT_EQ(entry->modified, c.modified);
    }
}

TEST(ListingParserTest, NamesThatCannotBeJoinedToAFolder)
{
    const std::pair<QString, bool> cases[] = {
        { "a.txt", true },
        { "a..b", true },
        { "...", true },
        { "two  blanks", true },
        { "", false },
        { ".", false },
        { "..", false },
        { "../escape", false },
        { "a/b", false },
        { "back\\slash", false },
        { QString("nul") + QChar(0) + "byte", false },
        { "line\rend", false },
        { "line\nend", false },
    };
    for (const auto& [name, plain] : cases)
        EXPECT_EQ(RemoteEntry::isPlainName(name), plain) << name.toStdString();
}

// A pattern with a lazy run before the size took hours on such a line; the parser is linear.
TEST(ListingParserTest, ATenMegabyteLineOfDigitsIsReadInLinearTime)
{
    const QByteArray digits(10 * 1024 * 1024, '7');
    ListingReader reader(ListingParser(Format::List, kNow), QStringLiteral("/"));
    ASSERT_TRUE(reader.take("-rw-r--r-- 1 " + digits + "\n"));
    ASSERT_TRUE(reader.take("-rw-r--r-- 1 " + digits + " Jan 01  2024 after.digits"));
    const auto listing = reader.finish();
    ASSERT_EQ(listing.size(), 1);
    EXPECT_EQ(listing.entries().front().name, QStringLiteral("after.digits"));
    EXPECT_EQ(listing.entries().front().size, -1);
}

// Lines cut anywhere by the data connection's pieces come out whole.
TEST(ListingParserTest, LinesSplitAcrossPiecesAreJoined)
{
    const QByteArray reply = "type=dir; sub\r\ntype=file;size=3; a.txt\r\ntype=file;size=4; b";
    for (qsizetype cut = 0; cut <= reply.size(); ++cut) {
        ListingReader reader(ListingParser(Format::Mlsd, kNow), QStringLiteral("/"));
        ASSERT_TRUE(reader.take(QByteArrayView(reply).first(cut)));
        ASSERT_TRUE(reader.take(QByteArrayView(reply).sliced(cut)));
        const auto listing = reader.finish();
        ASSERT_EQ(listing.size(), 3) << cut;
        EXPECT_TRUE(listing.isFolder(QStringLiteral("sub")));
        EXPECT_FALSE(listing.isFolder(QStringLiteral("a.txt")));
        EXPECT_EQ(listing.entries().back().name, QStringLiteral("b"));
    }
}

} // namespace
} // namespace zelto::test
