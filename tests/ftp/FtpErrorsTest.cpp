// Failures the engine maps, produced for real by the fixture servers, with the code and the message
// the user reads. A connect's other failures are in ConnectJobTest, a cut download in
// TransferRoutinesTest.

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

using FtpErrorsTest = FtpTest;

TEST_F(FtpErrorsTest, RealFailuresGetTheCodeWhoseMessageSaysWhatHappened)
{
    FtpServer server;
    QTemporaryDir local;
    const auto localFile = local.filePath("up.bin");
    ASSERT_TRUE(makeFile(localFile, 3'000'000, 1));
    ASSERT_TRUE(makeFile(server.home() + "/down.bin", 3'000'000, 2));
    RefusingPort refusing;

    enum class Step { Connect, Put, Get }; // the step that fails, after a connect
    struct Case {
        const char* name;
        FtpFaults faults;
        Step step;
        std::set<int> codes; // a cut upload sees a reset or a closed socket, by timing
        const char* message; // null: the table's text of the code
        const char* detail; // part of the detail, or null
        std::function<void(JobSite&)> site = [](JobSite&) {};
    };
    const auto forever = FtpFaults::kForever;
    const Case cases[] = {
        { "refused connection", {}, Step::Connect, { inet::kCannotConnect },
            "The attempt to connect to the server failed.", nullptr,
            [&](JobSite& site) { site.port = refusing.port(); } },
        { "wrong password", {}, Step::Connect, { inet::kLoginFailed },
            "The request to connect to and log on to an FTP server  failed.", "530",
            [](JobSite& site) { site.password = "wrong"; } },
        { "refused STOR", { .refuse = { "STOR" } }, Step::Put, { inet::kServerError },
            "An extended error was returned from the server.",
            "550 STOR refused by the test server." },
        { "stalled transfer", { .stall = { { "RETR", forever } } }, Step::Get, { inet::kTimeout },
            "The request has timed out.", nullptr },
        { "dropped during put", { .closeDataAfter = 100'000, .closeDataOn = { "STOR" } }, Step::Put,
            { inet::kConnectionReset, inet::kConnectionTerminated }, nullptr, nullptr },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        server.setFaults(c.faults);
        auto site = siteOf(server);
        c.site(site);
        CTransferSession session(recorder_.services);
        auto result = session.connectJob(site);
        if (result.ok() && c.step == Step::Put)
            result = putFile(session,
                { .from = localFile,
                    .to = "up.bin",
                    .size = 3'000'000,
                    .honourTransferType = false });
        else if (result.ok() && c.step == Step::Get)
            result = getFile(session,
                { .from = "down.bin",
                    .to = local.filePath("down.bin"),
                    .size = 3'000'000,
                    .honourTransferType = false });
        ASSERT_TRUE(c.codes.contains(result.code))
            << result.code << ": " << result.text().toStdString();
        EXPECT_EQ(result.message(),
            c.message ? QString::fromUtf8(c.message) : StringTable::errorMessage(result.code));
        EXPECT_TRUE(!c.detail || result.detail.contains(c.detail)) << result.detail.toStdString();
        EXPECT_FALSE(result.text().contains("secret"));
        // libcurl before 8.0 leaves a false note of its own in every active-mode failure.
        EXPECT_FALSE(result.detail.contains("inet_ntop")) << result.detail.toStdString();
    }
}

} // namespace
} // namespace zelto::test
