// Reading the names out of LIST replies of the formats servers send.

#include "distribution/RemoteListing.h"

#include <gtest/gtest.h>

namespace zelto::test {
namespace {

TEST(RemoteListingTest, NamesAndFoldersOfUnixAndDosLines)
{
    const QByteArray reply
        = "total 12\r\n"
          "drwxr-xr-x   2 owner    group        4096 Nov 21 17:25 2024\r\n"
          "-rw-r--r--   1 owner    group           1 Jan 01  2024 a.txt\r\n"
          "-rw-r--r--    1 1000     1000          12 Mar  3 09:01 two  blanks\n"
          "-rw-r--r-- 1 owner 7 Feb 29 2024 nogroup.bin\n"
          "lrwxrwxrwx   1 owner    group           7 Jan 01  2024 link -> a.txt\n"
          "drwxr-xr-x   2 owner    group        4096 Jan 01  2024 .\n"
          "drwxr-xr-x   2 owner    group        4096 Jan 01  2024 ..\n"
          "11-21-26  05:25PM       <DIR>          Old Reports\r\n"
          "11-21-26  17:25              1234 report 1.doc\r\n"
          "some words the parser does not know\r\n";
    const auto listing = RemoteListing::parse(reply);
    EXPECT_EQ(listing.folders, (QSet<QString> { "2024", "Old Reports" }));
    EXPECT_EQ(listing.files,
        (QSet<QString> { "a.txt", "two  blanks", "nogroup.bin", "link", "report 1.doc" }));
    EXPECT_TRUE(listing.contains(QStringLiteral("2024")));
    EXPECT_FALSE(listing.contains(QStringLiteral("2025")));
}

} // namespace
} // namespace zelto::test
