// Reading the names out of LIST replies of the formats servers send, and the bounds that keep a
// hostile listing from taking the client's memory or time.

#include "distribution/RemoteListing.h"

#include "DistributionFixture.h"
#include "ftp/FtpErrors.h"

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
          "-rw-r--r-- 1 owner group7 Feb 29 2024 glued.bin\n"
          "-rw-r--r-- 1 owner group 7 Feb 29 2024\n"
          "lrwxrwxrwx   1 owner    group           7 Jan 01  2024 link -> a.txt\n"
          "drwxr-xr-x   2 owner    group        4096 Jan 01  2024 .\n"
          "drwxr-xr-x   2 owner    group        4096 Jan 01  2024 ..\n"
          "11-21-26  05:25PM       <DIR>          Old Reports\r\n"
          "11-21-26  17:25              1234 report 1.doc\r\n"
          "some words the parser does not know\r\n";
    const auto listing = RemoteListing::parse(reply);
    EXPECT_EQ(listing.folders, (QSet<QString> { "2024", "Old Reports" }));
    EXPECT_EQ(listing.files,
        (QSet<QString> {
            "a.txt", "two  blanks", "nogroup.bin", "glued.bin", "link", "report 1.doc" }));
    EXPECT_TRUE(listing.contains(QStringLiteral("2024")));
    EXPECT_FALSE(listing.contains(QStringLiteral("2025")));
}

// A pattern with a lazy run before the size took hours on such a line; the parser is linear.
TEST(RemoteListingTest, ATenMegabyteLineOfDigitsIsReadInLinearTime)
{
    const QByteArray digits(10 * 1024 * 1024, '7');
    RemoteListing listing;
    listing.addLine("-rw-r--r-- 1 " + digits);
    listing.addLine("-rw-r--r-- 1 " + digits + " Jan 01  2024 after.digits");
    EXPECT_EQ(listing.files, (QSet<QString> { "after.digits" }));
}

using RemoteListingFetchTest = EngineFixture;

// A server that never ends its listing is cut off at the bound, with a reason, and the connection
// serves the next command.
TEST_F(RemoteListingFetchTest, AnEndlessListingIsRefusedAtItsBound)
{
    ASSERT_TRUE(QDir(home()).mkpath(QStringLiteral("in/sub")));
    auto job = session();
    ASSERT_TRUE(job->connectJob(siteOf(*server_)).ok());
    const auto listed = RemoteListing::fetch(*job->connection(), QStringLiteral("in/"));
    ASSERT_TRUE(listed.ok());
    EXPECT_EQ(listed.value.folders, (QSet<QString> { "sub" }));

    FtpFaults faults;
    faults.endlessListing = true;
    server_->setFaults(faults);
    const auto endless = RemoteListing::fetch(*job->connection(), QStringLiteral("in/"));
    EXPECT_EQ(endless.result.code, inet::kReplyNotParsed);
    EXPECT_TRUE(endless.result.detail.contains(QStringLiteral("was refused")))
        << endless.result.text().toStdString();
    EXPECT_TRUE(endless.value.files.isEmpty()) << "a refused listing gives no names";

    server_->setFaults({});
    const auto after = RemoteListing::fetch(*job->connection(), QStringLiteral("in/"));
    EXPECT_TRUE(after.ok()) << after.result.text().toStdString();
    EXPECT_EQ(after.value.folders, (QSet<QString> { "sub" }));
}

} // namespace
} // namespace zelto::test
