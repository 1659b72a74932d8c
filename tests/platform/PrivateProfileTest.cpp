#include "platform/PrivateProfile.h"

#include "TestFiles.h"
#include "platform/FileLock.h"
#include "platform/IniDocument.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <climits>
#include <csignal>
#include <optional>
#include <sys/resource.h>
#include <tuple>

namespace zelto {
namespace {

using test::contents;
using test::writeFile;

const QString kFallback = QStringLiteral("DEF");

class PrivateProfileTest : public ::testing::Test {
protected:
    [[nodiscard]] QString path() const { return dir_.filePath(QStringLiteral("test.ini")); }

    QTemporaryDir dir_;
};

TEST_F(PrivateProfileTest, ReadsValuesAsThePlatformDoes)
{
    // What is read of the file's section and key, or the fallback.
    const std::tuple<QByteArray, QString, QString, QString> cases[] = {
        // A value is cut to the buffer less one.
        { "[S]\nk=" + QByteArray(300, 'a') + "\n", "S", "k", QString(254, u'a') },
        { "[Queue1]\nLocalName=x\n", "QUEUE1", "localname", "x" }, // case is ignored
        { "[Größe]\nSchlüssel=1\n", "gRößE", "SCHLüSSEL", "1" }, // ASCII folds beside the rest
        { "[Größe]\nk=1\n", "GRÖSSE", "k", kFallback }, // non-ASCII letters match exactly
        { "[S]\na=1\n", "T", "a", kFallback },
    };
    for (const auto& [file, section, key, expected] : cases) {
        writeFile(path(), file);
        EXPECT_EQ(PrivateProfile::getString(path(), section, key, kFallback), expected)
            << file.constData();
    }
}

TEST_F(PrivateProfileTest, ReadsLeadingIntegers)
{
    const std::pair<const char*, int> cases[] = { { "n=12", 12 }, { "n=-3", -3 }, { "n=\"5\"", 5 },
        { "n=abc", 0 }, { "n=7x", 7 }, { "n=", 99 }, { "other=1", 99 },
        { "n=99999999999", INT_MAX }, { "n=-99999999999", INT_MIN } };
    for (const auto& [line, expected] : cases) {
        writeFile(path(), QByteArray("[S]\n") + line + "\n");
        EXPECT_EQ(PrivateProfile::getInt(path(), "S", "n", 99), expected) << line;
    }
}

TEST_F(PrivateProfileTest, MissingFileReadsDefaultsAndIsMadeByTheFirstWrite)
{
    EXPECT_EQ(PrivateProfile::getString(path(), "S", "k", kFallback), kFallback);
    EXPECT_EQ(PrivateProfile::getInt(path(), "S", "k", 21), 21);
    EXPECT_TRUE(PrivateProfile::getSection(path(), "S").isEmpty());
    EXPECT_TRUE(PrivateProfile::deleteKey(path(), "S", "k"));
    EXPECT_FALSE(QFile::exists(path()));

    EXPECT_TRUE(PrivateProfile::writeString(path(), "S", "k", "v"));
    EXPECT_EQ(PrivateProfile::getString(path(), "S", "k", kFallback), "v");
}

TEST_F(PrivateProfileTest, WritesChangeOnlyWhatTheyName)
{
    // A deleted key takes its duplicates along.
    writeFile(path(), "[S]\na=1\nb=2\nA=3\n");
    EXPECT_TRUE(PrivateProfile::deleteKey(path(), "S", "a"));
    EXPECT_EQ(contents(path()), "[S]\nb=2\n");
    writeFile(path(), "[A]\na=1\n[B]\nb=2\n[C]\nc=3\n");
    EXPECT_TRUE(PrivateProfile::deleteSection(path(), "b"));
    EXPECT_EQ(contents(path()), "[A]\na=1\n[C]\nc=3\n");
    // An empty section written keeps its header.
    EXPECT_TRUE(PrivateProfile::writeSection(path(), "A", {}));
    EXPECT_EQ(contents(path()), "[A]\n[C]\nc=3\n");
}

// One write of many new lines, and of one longer than any block they are kept in: each keeps its
// own text.
TEST_F(PrivateProfileTest, ManyChangesInOneWriteKeepEachLine)
{
    constexpr int kSections = 20'000;
    const QString longValue(100'000, u'v');
    writeFile(path(), "[S0]\nk=old\n");
    EXPECT_TRUE(PrivateProfile::update(path(), [&](IniDocument& document) {
        for (int i = 0; i < kSections; ++i)
            document.setValue(QStringLiteral("S%1").arg(i), "k", QString::number(i));
        document.setValue("S0", "long", longValue);
        return true;
    }));
    QByteArray expected = "[S0]\nk=0\nlong=" + longValue.toUtf8() + "\n";
    for (int i = 1; i < kSections; ++i)
        expected += "[S" + QByteArray::number(i) + "]\nk=" + QByteArray::number(i) + "\n";
    EXPECT_EQ(contents(path()), expected);
}

TEST_F(PrivateProfileTest, SectionReadFitsTheBuffer)
{
    writeFile(path(), "[S]\na=1\n bb = 22 \n;comment\n\nccc=333\n[L]\nk=" + QByteArray(2000, 'x'));
    const std::pair<int, QStringList> cases[] = {
        // "a=1\0bb=22\0ccc=333\0\0" takes 19 characters.
        { 19, { "a=1", "bb=22", "ccc=333" } },
        { 18, { "a=1", "bb=22", "ccc=33" } },
        { 10, { "a=1", "bb=2" } },
        { 2, {} },
    };
    for (const auto& [bufferSize, expected] : cases)
        EXPECT_EQ(PrivateProfile::getSection(path(), "s", bufferSize), expected) << bufferSize;
    EXPECT_EQ(PrivateProfile::getSection(path(), "L"), QStringList { "k=" + QString(1023, u'x') });
}

TEST_F(PrivateProfileTest, BadFilesReadWithoutHarmAndWritesKeepWhatWasReadable)
{
    const QByteArray good = "[Good]\nkey=value\n";
    // Cut inside a header, without sections, with NULs and binary, with a 10 MB line.
    const std::pair<QByteArray, QString> cases[] = {
        { good + "[Oth", "value" },
        { "key=value\nother=1", kFallback },
        { QByteArray("\0\x01\xff[\0]\n", 7) + good + QByteArray("\0\0ga\xc3\x28\n", 7), "value" },
        { good + "huge=" + QByteArray(10 * 1024 * 1024, 'x') + "\n", "value" },
    };
    for (const auto& [file, expected] : cases) {
        SCOPED_TRACE(file.left(20).toStdString());
        writeFile(path(), file);
        EXPECT_EQ(PrivateProfile::getString(path(), "Good", "key", kFallback), expected);

        EXPECT_TRUE(PrivateProfile::writeString(path(), "Added", "k", "1"));
        EXPECT_TRUE(contents(path()).startsWith(file));
        EXPECT_TRUE(PrivateProfile::writeString(path(), "Good", "added", "2"));
        EXPECT_EQ(PrivateProfile::getString(path(), "Good", "key", kFallback), expected);
        EXPECT_EQ(PrivateProfile::getString(path(), "Added", "k", kFallback), "1");
        EXPECT_EQ(PrivateProfile::getString(path(), "Good", "added", kFallback), "2");
    }
    EXPECT_EQ(PrivateProfile::getString(path(), "Good", "huge", kFallback), QString(254, u'x'));
}

// The disk filling up half way through the new file must leave the old one whole.
TEST_F(PrivateProfileTest, FailedWriteLeavesTheOldFileWhole)
{
    const QByteArray before = "[S]\nk=old\n";
    writeFile(path(), before);
    rlimit old {};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit small { 100, old.rlim_max };
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const bool written = PrivateProfile::writeString(path(), "S", "k", QString(4096, u'n'));
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);

    EXPECT_FALSE(written);
    EXPECT_TRUE(PrivateProfile::lastWriteFailure().contains(path()));
    EXPECT_EQ(contents(path()), before);
    // No temporary file is left; the lock file of other processes stays, as it must.
    EXPECT_EQ(QDir(dir_.path()).entryList(QDir::Files | QDir::Hidden),
        (QStringList { ".test.ini.lock", "test.ini" }));
}

TEST_F(PrivateProfileTest, NewFilesAreOwnerOnlyAndRewritesKeepPermissions)
{
    const QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
    const QFile::Permissions readable = ownerOnly | QFile::ReadGroup | QFile::ReadOther;
    const QFile::Permissions anyone(0x7077); // the owner's, the group's and the others' bits
    // A new file, then files of either kind rewritten.
    for (const auto& [before, after] : { std::pair { QFile::Permissions(), ownerOnly },
             std::pair { ownerOnly, ownerOnly }, std::pair { readable, readable } }) {
        QFile::remove(path());
        if (before.toInt()) {
            writeFile(path(), "[S]\n");
            QFile::setPermissions(path(), before);
        }
        EXPECT_TRUE(PrivateProfile::writeString(path(), "S", "Password", "secret"));
        EXPECT_EQ(QFile::permissions(path()) & anyone, after) << before.toInt();
    }
}

// A holder that never lets go (a stuck process) fails the wait with a reason, instead of hanging
// the writer; once it lets go the lock is had again.
TEST(FileLockTest, AStuckHolderEndsTheWaitWithAReason)
{
    QTemporaryDir dir;
    const QString data = dir.filePath(QStringLiteral("zeltoQue.ini"));
    std::optional<FileLock> holder(std::in_place, data);
    ASSERT_TRUE(holder->held()) << holder->failure().toStdString();

    const FileLock waiter(data, std::chrono::milliseconds(20));
    EXPECT_FALSE(waiter.held());
    EXPECT_TRUE(waiter.failure().contains(QStringLiteral(".zeltoQue.ini.lock")));

    holder.reset();
    EXPECT_TRUE(FileLock(data, std::chrono::milliseconds(20)).held());
}

} // namespace
} // namespace zelto
