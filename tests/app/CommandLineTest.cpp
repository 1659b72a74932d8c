#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace zelto {
namespace {

TEST(CommandLineParse, TakesOnlyTheFirstAcceptedForm)
{
    const struct {
        const char* name;
        QStringList parameters;
        QString script;
        QString link;
        bool queue = false;
        bool reset = false;
    } cases[] = {
        { "script flag any case", { "/B", "run.cmd" }, "run.cmd", "" },
        { "link with slash", { "/l", "nightly" }, "", "nightly" },
        { "link flag is exact", { "-L", "nightly" }, "", "" },
        { "later flag replaces pending", { "-b", "-l", "nightly" }, "", "nightly" },
        { "unknown flag drops its value", { "-x", "foo", "-b", "run.cmd" }, "run.cmd", "" },
        { "value after dropped value ignored", { "-x", "foo", "nightly" }, "", "" },
        { "first form wins", { "-b", "run.cmd", "-l", "nightly" }, "run.cmd", "" },
        { "flag without value", { "-l" }, "", "" },
        { "absolute path is a value", { "/b", "/tmp/x/run.CMD" }, "/tmp/x/run.CMD", "" },
        { "queue needs no value", { "/Q", "nightly" }, "", "", true },
        { "queue after a pending flag", { "-l", "-q" }, "", "", true },
        { "queue after a form is ignored", { "-l", "nightly", "-q" }, "", "nightly" },
        { "queue reset", { "-q", "--reset" }, "", "", true, true },
        { "reset before the queue", { "--reset", "/q" }, "", "", true, true },
        { "reset without the queue", { "--reset", "-l", "nightly" }, "", "nightly" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const StartRequest request = CommandLineParser::parse(c.parameters);
        EXPECT_EQ(request.scriptFile, c.script);
        EXPECT_EQ(request.linkName, c.link);
        EXPECT_EQ(request.queueRun, c.queue);
        EXPECT_EQ(request.resetQueue, c.reset);
        EXPECT_EQ(request.unattended, !c.script.isEmpty() || !c.link.isEmpty() || c.queue);
    }
}

} // namespace
} // namespace zelto
