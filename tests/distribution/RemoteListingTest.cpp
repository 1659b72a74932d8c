// Reading the names out of LIST replies of the formats servers send, and the bounds that keep a
// hostile listing from taking the client's memory or time.

#include "distribution/RemoteListing.h"

#include "DistributionFixture.h"
#include "ftp/FtpConnection.h"
#include "ftp/FtpErrors.h"

#include <atomic>
#include <functional>
#include <thread>

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

// A server that keeps the data connection alive with a byte now and then: the minimum rate over
// the data time-out ends a get and a listing alike, where a limit on silence alone never would.
TEST_F(RemoteListingFetchTest, ADrippingServerTimesOutAGetAndAListing)
{
    using namespace std::chrono_literals;
    useQuickTimeouts(1);
    ASSERT_TRUE(makeFile(home() + QStringLiteral("/drip.bin"), 10'000, 1));
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(makeFile(home() + QStringLiteral("/in/file%1.txt").arg(i), 10, 2));
    const struct {
        const char* command;
        std::function<FtpResult(FtpConnection&)> run;
    } cases[] = {
        { "RETR",
            [](FtpConnection& connection) {
                return connection.download(QStringLiteral("drip.bin"), TransferType::Binary,
                    [](const char*, qint64) { return true; });
            } },
        { "LIST",
            [](FtpConnection& connection) {
                return RemoteListing::fetch(connection, QStringLiteral("in/")).result;
            } },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.command);
        // Well above one byte a second; the connection must still not be held.
        FtpFaults faults;
        faults.trickle[QString::fromLatin1(c.command)] = 300ms;
        server_->setFaults(faults);
        std::stop_source stop;
        auto job
            = std::make_unique<CTransferSession>(recorder_.services, &progress_, stop.get_token());
        ASSERT_TRUE(job->connectJob(siteOf(*server_)).ok());
        // Without the rule the transfer would run for an hour: stopped well before, it fails
        // as cancelled, not as timed out.
        std::atomic<bool> ended = false;
        std::jthread watchdog([&] {
            if (!waitUntil([&] { return ended.load(); }, 30s))
                stop.request_stop();
        });
        const auto result = c.run(*job->connection());
        ended = true;
        EXPECT_EQ(result.code, inet::kTimeout) << result.text().toStdString();
    }
}

} // namespace
} // namespace zelto::test
