// Every failure the engine maps, produced for real by the fixture servers, with the code and the
// message the user reads.

#include "ftp/FtpErrors.h"

#include "FtpTestKit.h"
#include "TestFiles.h"
#include "ftp/CTransferSession.h"
#include "ftp/TransferRoutines.h"
#include "platform/StringTable.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <set>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

TEST(FtpErrorsTest, RealFailuresGetTheCodeWhoseMessageSaysWhatHappened)
{
    SKIP_WITHOUT(FtpServer);
    TempSettings settings;
    useQuickTimeouts();
    useDirectAccess();
    Recorder recorder;
    FtpServer server;
    QTemporaryDir local;
    const auto localFile = local.filePath("up.bin");
    ASSERT_TRUE(makeFile(localFile, 3'000'000, 1));
    ASSERT_TRUE(makeFile(server.home() + "/down.bin", 3'000'000, 2));
    RefusingPort refusing;

    // The session of a case: connected, or failed in connectJob.
    const auto connected = [&](const std::function<FtpResult(CTransferSession&)>& work) {
        return [&, work] {
            CTransferSession session(recorder.services);
            if (auto result = session.connectJob(siteOf(server)); !result.ok())
                return result;
            return work(session);
        };
    };
    const auto connectTo = [&](const std::function<void(JobSite&)>& change) {
        return [&, change] {
            CTransferSession session(recorder.services);
            auto site = siteOf(server);
            change(site);
            return session.connectJob(site);
        };
    };
    const auto put = [&](const QString& remote) {
        return connected([&, remote](CTransferSession& session) {
            return putFile(session, { .from = localFile, .to = remote, .size = 3'000'000 });
        });
    };
    const auto get = [&](const QString& remote) {
        return connected([&, remote](CTransferSession& session) {
            return getFile(
                session, { .from = remote, .to = local.filePath("down.bin"), .size = 3'000'000 });
        });
    };

    struct Case {
        const char* name;
        std::function<void(FtpFaults&)> fault;
        std::function<FtpResult()> run;
        std::set<int> codes; // a cut upload sees a reset or a closed socket, by timing
        const char* message; // null: the table's text of the code
        const char* detail; // part of the detail, or null
    };
    const Case cases[] = {
        { "refused connection", {}, connectTo([&](JobSite& site) { site.port = refusing.port(); }),
            { inet::kCannotConnect }, "The attempt to connect to the server failed.", nullptr },
        { "unknown host", {},
            connectTo([](JobSite& site) { site.server = "no-such-host.invalid"; }),
            { inet::kNameNotResolved }, "The server name could not be resolved.\n", nullptr },
        { "wrong password", {}, connectTo([](JobSite& site) { site.password = "wrong"; }),
            { inet::kLoginFailed },
            "The request to connect to and log on to an FTP server  failed.", "530" },
        { "stalled server", [](FtpFaults& f) { f.stall["USER"] = FtpFaults::kForever; },
            connectTo([](JobSite&) {}), { inet::kTimeout }, "The request has timed out.", nullptr },
        { "missing folder", {}, connected([](CTransferSession& session) {
             return session.connection()->changeFolder("nope");
         }),
            { inet::kServerError }, "An extended error was returned from the server.", "550" },
        { "refused STOR", [](FtpFaults& f) { f.refuse = { "STOR" }; }, put("up.bin"),
            { inet::kServerError }, "An extended error was returned from the server.",
            "550 STOR refused by the test server." },
        { "stalled transfer", [](FtpFaults& f) { f.stall["RETR"] = FtpFaults::kForever; },
            get("down.bin"), { inet::kTimeout }, "The request has timed out.", nullptr },
        { "dropped during get",
            [](FtpFaults& f) {
                f.closeDataAfter = 100'000;
                f.closeDataOn = { "RETR" };
            },
            get("down.bin"), { inet::kConnectionTerminated },
            "The connection with the server has been terminated.", nullptr },
        { "dropped during put",
            [](FtpFaults& f) {
                f.closeDataAfter = 100'000;
                f.closeDataOn = { "STOR" };
            },
            put("up.bin"), { inet::kConnectionReset, inet::kConnectionTerminated }, nullptr,
            nullptr },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FtpFaults faults;
        if (c.fault)
            c.fault(faults);
        server.setFaults(faults);
        const auto result = c.run();
        ASSERT_TRUE(c.codes.contains(result.code))
            << result.code << ": " << result.text().toStdString();
        EXPECT_EQ(result.message(),
            c.message ? QString::fromUtf8(c.message) : StringTable::errorMessage(result.code));
        if (c.detail) {
            EXPECT_TRUE(result.detail.contains(c.detail)) << result.detail.toStdString();
        }
        EXPECT_FALSE(result.text().contains("secret"));
        // libcurl before 8.0 leaves a false note of its own in every active-mode failure.
        EXPECT_FALSE(result.detail.contains("inet_ntop")) << result.detail.toStdString();
    }
}

} // namespace
} // namespace zelto::test
