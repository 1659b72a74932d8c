#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace zelto {
namespace {

struct ParseCase {
    const char* name;
    QStringList parameters;
    QString script;
    QString link;
};

void PrintTo(const ParseCase& c, std::ostream* os)
{
    *os << c.name;
}

class CommandLineParse : public ::testing::TestWithParam<ParseCase> { };

TEST_P(CommandLineParse, TakesOnlyTheFirstAcceptedForm)
{
    const ParseCase& c = GetParam();
    const StartRequest request = CommandLineParser::parse(c.parameters);
    EXPECT_EQ(request.scriptFile, c.script);
    EXPECT_EQ(request.linkName, c.link);
    EXPECT_EQ(request.unattended, !c.script.isEmpty() || !c.link.isEmpty());
}

const QString kLongName = QString(4096, u'n');

INSTANTIATE_TEST_SUITE_P(Rules, CommandLineParse,
    ::testing::Values(ParseCase { "ScriptWithHyphen", { "-b", "run.cmd" }, "run.cmd", "" },
        ParseCase { "ScriptFlagAnyCase", { "/B", "run.cmd" }, "run.cmd", "" },
        ParseCase { "LinkWithSlash", { "/l", "nightly" }, "", "nightly" },
        ParseCase { "LinkFlagIsExact", { "-L", "nightly" }, "", "" },
        ParseCase { "LaterFlagReplacesPending", { "-b", "-l", "nightly" }, "", "nightly" },
        ParseCase { "UnknownFlagDropsItsValue", { "-x", "foo", "-b", "run.cmd" }, "run.cmd", "" },
        ParseCase { "ValueAfterDroppedValueIgnored", { "-x", "foo", "nightly" }, "", "" },
        ParseCase { "FirstFormWins", { "-b", "run.cmd", "-l", "nightly" }, "run.cmd", "" },
        ParseCase { "LinkThenScriptIgnored", { "-l", "nightly", "-b", "run.cmd" }, "", "nightly" },
        ParseCase { "BareValueOpensNothing", { "notes.txt" }, "", "" },
        ParseCase { "FlagWithoutValue", { "-l" }, "", "" },
        ParseCase { "AbsolutePathIsAValue", { "/b", "/tmp/x/run.CMD" }, "/tmp/x/run.CMD", "" },
        ParseCase { "SlashWordIsNotAFlag", { "/bx", "run.cmd" }, "", "" },
        ParseCase { "BareHyphenIsAnUnknownFlag", { "-", "run.cmd" }, "", "" },
        ParseCase { "BlanksAndNonAscii", { "-b", "Mein Skript ü.cmd" }, "Mein Skript ü.cmd", "" },
        ParseCase { "VeryLongValue", { "-l", kLongName }, "", kLongName }),
    [](const auto& info) { return std::string(info.param.name); });

TEST(CommandLineFlag, RecognisesHyphenAndSlashLetterOnly)
{
    EXPECT_EQ(CommandLineParser::flagName(QStringLiteral("-b")), QStringLiteral("b"));
    EXPECT_EQ(CommandLineParser::flagName(QStringLiteral("/l")), QStringLiteral("l"));
    EXPECT_EQ(CommandLineParser::flagName(QStringLiteral("-")), QString());
    EXPECT_FALSE(CommandLineParser::flagName(QStringLiteral("/")).has_value());
    EXPECT_FALSE(CommandLineParser::flagName(QStringLiteral("/1")).has_value());
    EXPECT_FALSE(CommandLineParser::flagName(QStringLiteral("/home/me/run.cmd")).has_value());
    EXPECT_FALSE(CommandLineParser::flagName(QStringLiteral("run.cmd")).has_value());
}

} // namespace
} // namespace zelto
