// How a script's lines are read and taken apart, before anything runs.

#include "scripts/ScriptLine.h"

#include "TestFiles.h"
#include "scripts/ScriptReader.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace zelto {
namespace {

using Kind = ScriptLine::Kind;

TEST(ScriptLine, KeywordsWordsAndCounts)
{
    // Whole runs show the rest: case, the password hidden, comments, malformed and unparsable.
    struct Case {
        const char* line;
        Kind kind;
        ScriptVerb verb;
        const char* words; // joined by blanks
        QString shown;
    };
    const Case cases[] = {
        // Seven words at most, as the pattern reads them; the password never shows.
        { "open s h u p 21 x y", Kind::Command, ScriptVerb::Open, "open s h u p 21 x",
            "open s h u ***** 21 x y" },
        // Only as many letters as the keyword has are compared; leading white space goes.
        { "  \tgetall srv a.txt", Kind::Command, ScriptVerb::Get, "getall srv a.txt",
            "getall srv a.txt" },
        // "close" needs no name.
        { "closeall", Kind::Command, ScriptVerb::Close, "closeall", "closeall" },
        { "CD\tsrv\t..", Kind::Command, ScriptVerb::Cd, "CD srv ..", "CD\tsrv\t.." },
        { "send a b *.txt extra", Kind::Command, ScriptVerb::Send, "send a b *.txt",
            "send a b *.txt extra" },
        { "rename srv a", Kind::Malformed, ScriptVerb::Rename, "rename srv a", "rename srv a" },
        { "   //comment", Kind::Skipped, ScriptVerb::Open, "", "//comment" },
        { "  \t ", Kind::Skipped, ScriptVerb::Open, "", "" },
        // A mistyped open still hides the word where an open line has its password.
        { "opn typo host user secret 21", Kind::Unparsable, ScriptVerb::Open, "",
            "opn typo host user ***** 21" },
        // Two letters swapped are two edits, the most a typo may have; five words, the fewest.
        { "OEPN typo host user secret", Kind::Unparsable, ScriptVerb::Open, "",
            "OEPN typo host user *****" },
        { "lcd a b c keep", Kind::Command, ScriptVerb::Lcd, "lcd a", "lcd a b c keep" },
        { "\x01\x7f"
          "bin",
            Kind::Unparsable, ScriptVerb::Open, "",
            QString(2, QChar::ReplacementCharacter) + "bin" },
    };
    for (const Case& c : cases) {
        const ScriptLine line = ScriptLine::parse(QString::fromUtf8(c.line));
        EXPECT_EQ(line.kind, c.kind) << c.line;
        EXPECT_EQ(line.verb, c.verb) << c.line;
        EXPECT_EQ(line.words.join(u' '), QString::fromUtf8(c.words)) << c.line;
        EXPECT_EQ(line.shown, c.shown) << c.line;
    }

    // A line read only in part is never run, and its report stays short.
    const ScriptLine cut
        = ScriptLine::parse(QStringLiteral("open s h u pw ") + QString(500, u'x'), true);
    EXPECT_EQ(cut.kind, Kind::Unparsable);
    EXPECT_EQ(cut.shown.size(), ScriptLine::kShownOfCutLine + 3);
    EXPECT_TRUE(cut.shown.startsWith(QStringLiteral("open s h u ***** xx")));
}

TEST(ScriptReader, LongLinesAreCutAndLineEndsDropped)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("s.cmd"));
    const QByteArray full(ScriptReader::kMaxLineBytes, 'f');
    test::writeFile(path,
        "\xEF\xBB\xBFopen\r\n" + QByteArray(10'000, 'x') + "\n" + full
            + "\r\n" // at the limit: whole
            + full + "\nlast");

    ScriptReader reader(path);
    ASSERT_TRUE(reader.open());
    struct Expected {
        QString text;
        bool cut;
    };
    const Expected expected[] = {
        { QStringLiteral("open"), false },
        { QString(ScriptReader::kMaxLineBytes, u'x'), true },
        { QString::fromLatin1(full), false },
        { QString::fromLatin1(full), false },
        { QStringLiteral("last"), false },
    };
    for (const Expected& e : expected) {
        const auto line = reader.next();
        ASSERT_TRUE(line);
        EXPECT_EQ(line->text, e.text);
        EXPECT_EQ(line->cut, e.cut);
    }
    EXPECT_FALSE(reader.next());
}

} // namespace
} // namespace zelto
