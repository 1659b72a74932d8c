#include "platform/PrivateProfile.h"

#include "platform/IniDocument.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <climits>
#include <csignal>
#include <functional>
#include <optional>
#include <ostream>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace zelto {
namespace {

const QString kFallback = QStringLiteral("DEF");

class PrivateProfileTest : public ::testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name = QStringLiteral("test.ini")) const
    {
        return dir_.filePath(name);
    }

    static void writeFile(const QString& file, const QByteArray& bytes)
    {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        ASSERT_EQ(out.write(bytes), bytes.size());
    }

    [[nodiscard]] static QByteArray readFile(const QString& file)
    {
        QFile in(file);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

    [[nodiscard]] QStringList filesInFolder() const
    {
        return QDir(dir_.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }

    QTemporaryDir dir_;
};

struct ReadCase {
    const char* name;
    QByteArray file;
    QString section;
    QString key;
    int bufferSize;
    QString expected;
};

TEST_F(PrivateProfileTest, ReadsValuesAsThePlatformDoes)
{
    const QByteArray a300(300, 'a');
    const ReadCase cases[] = {
        { "value cut to buffer - 1", "[S]\nk=" + a300 + "\n", "S", "k", 255, QString(254, u'a') },
        { "value that fits stays whole", "[S]\nk=" + a300.left(254), "S", "k", 255,
            QString(254, u'a') },
        { "small buffer", "[S]\nk=" + a300, "S", "k", 50, QString(49, u'a') },
        { "fallback cut too", "[S]\n", "S", "k", 3, "DE" },
        { "no buffer gives nothing", "[S]\nk=v\n", "S", "k", 0, "" },
        { "section and key ignore case", "[Queue1]\nLocalName=x\n", "QUEUE1", "localname", 255,
            "x" },
        { "ASCII letters fold beside non-ASCII ones", "[Größe]\nSchlüssel=1\n", "gRößE",
            "SCHLüSSEL", 255, "1" },
        { "non-ASCII letters match exactly", "[Größe]\nk=1\n", "GRÖSSE", "k", 255, kFallback },
        { "blanks trimmed", "[S]\n \t k \t=  v v \t\n", " S ", " k ", 255, "v v" },
        { "one pair of quotes stripped", "[S]\nk=\"\"q\"\"\n", "S", "k", 255, "\"q\"" },
        { "unpaired quote kept", "[S]\nk=\"q\n", "S", "k", 255, "\"q" },
        { "empty value is a value", "[S]\nk=\n", "S", "k", 255, "" },
        { "first of duplicate sections wins", "[S]\na=1\n[s]\na=2\nb=3\n", "S", "b", 255,
            kFallback },
        { "first of duplicate keys wins", "[S]\na=1\nA=2\n", "S", "a", 255, "1" },
        { "keys before the first header are ignored", "a=1\n[S]\n", "S", "a", 255, kFallback },
        { "comment is no key", "[S]\n;a=1\n", "S", ";a", 255, kFallback },
        { "line without = is no key", "[S]\na\n", "S", "a", 255, kFallback },
        { "value may hold =", "[S]\na=b=c\n", "S", "a", 255, "b=c" },
        { "CRLF line breaks", "[S]\r\na=1\r\n", "S", "a", 255, "1" },
        { "byte order mark", "\xEF\xBB\xBF[S]\na=1\n", "S", "a", 255, "1" },
        { "character never split",
            "[S]\nk=ab\xF0\x9F\x98\x80"
            "c\n",
            "S", "k", 4, QString::fromUtf8("ab\xF0\x9F\x98\x80") },
        { "[ without ] is no header", "[S]\n[broken\na=1\n", "S", "a", 255, "1" },
        { "name ends at the last ]", "[a]b] ; note\nk=v\n", "a]b", "k", 255, "v" },
        { "missing section", "[S]\na=1\n", "T", "a", 255, kFallback },
    };
    for (const ReadCase& c : cases) {
        SCOPED_TRACE(c.name);
        writeFile(path(), c.file);
        EXPECT_EQ(PrivateProfile::getString(path(), c.section, c.key, kFallback, c.bufferSize),
            c.expected);
    }
}

TEST_F(PrivateProfileTest, ReadsLeadingIntegers)
{
    const struct {
        const char* line;
        int expected;
    } cases[] = {
        { "n=12", 12 },
        { "n=-3", -3 },
        { "n=+4", 4 },
        { "n= 42 ", 42 },
        { "n=\"5\"", 5 },
        { "n=abc", 0 },
        { "n=7x", 7 },
        { "n=-", 0 },
        { "n=", 99 },
        { "other=1", 99 },
        { "n=99999999999", INT_MAX },
        { "n=-99999999999", INT_MIN },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        writeFile(path(), QByteArray("[S]\n") + c.line + "\n");
        EXPECT_EQ(PrivateProfile::getInt(path(), "S", "n", 99), c.expected);
    }
}

TEST_F(PrivateProfileTest, MissingFileReadsDefaultsAndIsMadeByTheFirstWrite)
{
    EXPECT_EQ(PrivateProfile::getString(path(), "S", "k", kFallback), kFallback);
    EXPECT_EQ(PrivateProfile::getInt(path(), "S", "k", 21), 21);
    EXPECT_TRUE(PrivateProfile::getSection(path(), "S").isEmpty());
    EXPECT_TRUE(PrivateProfile::deleteKey(path(), "S", "k"));
    EXPECT_TRUE(PrivateProfile::deleteSection(path(), "S"));
    EXPECT_FALSE(QFile::exists(path()));

    EXPECT_TRUE(PrivateProfile::writeString(path(), "S", "k", "v"));
    EXPECT_EQ(PrivateProfile::getString(path(), "S", "k", kFallback), "v");

    const QString inMissingFolder = path("missing/test.ini");
    EXPECT_FALSE(PrivateProfile::writeString(inMissingFolder, "S", "k", "v"));
    EXPECT_FALSE(QDir(path("missing")).exists());
}

struct WriteCase {
    const char* name;
    std::optional<QByteArray> before; // none: no file
    std::function<bool(const QString&)> change;
    std::optional<QByteArray> after;
};

TEST_F(PrivateProfileTest, WritesChangeOnlyWhatTheyName)
{
    using P = PrivateProfile;
    const WriteCase cases[] = {
        { "first write makes the file", std::nullopt,
            [](const QString& f) { return P::writeString(f, "S", "k", "v"); }, "[S]\nk=v\n" },
        { "new key goes after the last line of its section", "[A]\na=1\n\n[B]\nb=2\n",
            [](const QString& f) { return P::writeString(f, "a", "c", "3"); },
            "[A]\na=1\nc=3\n\n[B]\nb=2\n" },
        { "key changed in place, its spelling and other lines kept",
            "[S]\n; note\nKey = old\ngarbage\n",
            [](const QString& f) { return P::writeString(f, "s", "KEY", "new"); },
            "[S]\n; note\nKey=new\ngarbage\n" },
        { "new section at the end of a file cut short", "[A]\na=1",
            [](const QString& f) { return P::writeString(f, "B", "b", "2"); },
            "[A]\na=1\n[B]\nb=2\n" },
        { "CRLF file stays CRLF", "[A]\r\na=1\r\n",
            [](const QString& f) { return P::writeString(f, "A", "b", "2"); },
            "[A]\r\na=1\r\nb=2\r\n" },
        { "line breaks in a value cannot add sections", "[S]\n",
            [](const QString& f) { return P::writeString(f, "S", "k", "x\r\n[Evil]\ny=1"); },
            "[S]\nk=x  [Evil] y=1\n" },
        { "delete key removes its duplicates", "[S]\na=1\nb=2\nA=3\n",
            [](const QString& f) { return P::deleteKey(f, "S", "a"); }, "[S]\nb=2\n" },
        { "delete section removes header and keys", "[A]\na=1\n[B]\nb=2\n[C]\nc=3\n",
            [](const QString& f) { return P::deleteSection(f, "b"); }, "[A]\na=1\n[C]\nc=3\n" },
        { "section write replaces the section", "[A]\na=1\n; c\nb=2\n[B]\nx=1\n",
            [](const QString& f) {
                return P::writeSection(f, "A", { "c=3", "junk", "d=4" });
            },
            "[A]\nc=3\nd=4\n[B]\nx=1\n" },
        { "empty section write keeps the header", "[A]\na=1\n[B]\nb=2\n",
            [](const QString& f) { return P::writeSection(f, "A", {}); }, "[A]\n[B]\nb=2\n" },
        { "section moved whole onto another", "[Q2]\na=1\n[Q3]\nb= 2\nc=\"x\"\n",
            [](const QString& f) { return P::writeSection(f, "Q2", P::getSection(f, "Q3")); },
            "[Q2]\nb=2\nc=\"x\"\n[Q3]\nb= 2\nc=\"x\"\n" },
        { "update makes several changes at once", "[S]\na=1\n",
            [](const QString& f) {
                return P::update(f, [](IniDocument& d) {
                    d.setValue("S", "a", "2");
                    d.setValue("T", "b", "3");
                    return d.removeSection("S");
                });
            },
            "[T]\nb=3\n" },
        { "update that declines writes nothing", std::nullopt,
            [](const QString& f) {
                return P::update(f, [](IniDocument& d) {
                    d.setValue("S", "a", "2");
                    return false;
                });
            },
            std::nullopt },
    };
    for (const WriteCase& c : cases) {
        SCOPED_TRACE(c.name);
        QFile::remove(path());
        if (c.before)
            writeFile(path(), *c.before);
        EXPECT_TRUE(c.change(path()));
        EXPECT_EQ(QFile::exists(path()), c.after.has_value());
        if (c.after) {
            EXPECT_EQ(readFile(path()), *c.after);
        }
    }
}

TEST_F(PrivateProfileTest, SectionReadFitsTheBuffer)
{
    writeFile(path(), "[S]\na=1\n bb = 22 \n;comment\n\nccc=333\n[L]\nk=" + QByteArray(2000, 'x'));
    const struct {
        int bufferSize;
        QStringList expected;
    } cases[] = {
        // "a=1\0bb=22\0ccc=333\0\0" takes 19 characters.
        { 1027, { "a=1", "bb=22", "ccc=333" } },
        { 19, { "a=1", "bb=22", "ccc=333" } },
        { 18, { "a=1", "bb=22", "ccc=33" } },
        { 12, { "a=1", "bb=22" } },
        { 11, { "a=1", "bb=22" } },
        { 10, { "a=1", "bb=2" } },
        { 6, { "a=1" } },
        { 5, { "a=1" } },
        { 4, { "a=" } },
        { 2, {} },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.bufferSize);
        EXPECT_EQ(PrivateProfile::getSection(path(), "s", c.bufferSize), c.expected);
    }
    EXPECT_EQ(PrivateProfile::getSection(path(), "L"), QStringList { "k=" + QString(1023, u'x') });
}

QByteArray randomBytes(qsizetype size)
{
    QRandomGenerator random(42);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& c : bytes)
        c = char(random.bounded(256));
    return bytes;
}

TEST_F(PrivateProfileTest, BadFilesReadWithoutHarmAndWritesKeepWhatWasReadable)
{
    const QByteArray good = "[Good]\nkey=value\n";
    const struct {
        const char* name;
        QByteArray file;
        QString expected;
    } cases[] = {
        { "empty", "", kFallback },
        { "cut inside a line", good + "[Other]\nhal", "value" },
        { "cut inside a header", good + "[Oth", "value" },
        { "no sections", "key=value\nother=1", kFallback },
        { "NULs and binary",
            QByteArray("\0\x01\xff[\0]\n", 7) + good + QByteArray("\0\0ga\xc3\x28\n", 7), "value" },
        { "[ without ]", "[Good\nkey=other\n" + good, "value" },
        { "random bytes", randomBytes(64 * 1024), kFallback },
        { "10 MB line", good + "huge=" + QByteArray(10 * 1024 * 1024, 'x') + "\n", "value" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        writeFile(path(), c.file);
        EXPECT_EQ(PrivateProfile::getString(path(), "Good", "key", kFallback), c.expected);

        EXPECT_TRUE(PrivateProfile::writeString(path(), "Added", "k", "1"));
        EXPECT_TRUE(readFile(path()).startsWith(c.file));
        EXPECT_TRUE(PrivateProfile::writeString(path(), "Good", "added", "2"));
        EXPECT_EQ(PrivateProfile::getString(path(), "Good", "key", kFallback), c.expected);
        EXPECT_EQ(PrivateProfile::getString(path(), "Added", "k", kFallback), "1");
        EXPECT_EQ(PrivateProfile::getString(path(), "Good", "added", kFallback), "2");
    }
    EXPECT_EQ(PrivateProfile::getString(path(), "Good", "huge", kFallback), QString(254, u'x'));
}

struct FailureCase {
    const char* name;
    bool needsUnprivilegedUser; // permissions do not stop the superuser
    // Makes the next write fail; returns what undoes that.
    std::function<std::function<void()>(const QString& folder, const QString& file)> arrange;
};

void PrintTo(const FailureCase& c, std::ostream* out)
{
    *out << c.name;
}

class FailedWriteTest : public PrivateProfileTest,
                        public ::testing::WithParamInterface<FailureCase> { };

TEST_P(FailedWriteTest, LeavesTheOldFileWhole)
{
    const FailureCase& c = GetParam();
    if (c.needsUnprivilegedUser && geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind the superuser";
    const QByteArray before = "[S]\nk=old\n";
    writeFile(path(), before);

    const auto undo = c.arrange(dir_.path(), path());
    const bool written = PrivateProfile::writeString(path(), "S", "k", QString(4096, u'n'));
    undo();

    EXPECT_FALSE(written);
    EXPECT_EQ(readFile(path()), before);
    EXPECT_EQ(filesInFolder(), QStringList { "test.ini" });
}

INSTANTIATE_TEST_SUITE_P(PrivateProfile, FailedWriteTest,
    ::testing::Values(FailureCase { "ReadOnlyFolder", true,
                          [](const QString& folder, const QString&) {
                              QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
                              return [folder] {
                                  QFile::setPermissions(folder,
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
                              };
                          } },
        FailureCase { "UnreadableFile", true,
            [](const QString&, const QString& file) {
                QFile::setPermissions(file, QFile::WriteOwner);
                return
                    [file] { QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner); };
            } },
        // The disk filling up half way through the new file.
        FailureCase { "FileSizeLimit", false,
            [](const QString&, const QString&) {
                rlimit old {};
                getrlimit(RLIMIT_FSIZE, &old);
                const rlimit small { 100, old.rlim_max };
                const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
                setrlimit(RLIMIT_FSIZE, &small);
                return [old, oldHandler] {
                    setrlimit(RLIMIT_FSIZE, &old);
                    std::signal(SIGXFSZ, oldHandler);
                };
            } }),
    [](const ::testing::TestParamInfo<FailureCase>& info) { return std::string(info.param.name); });

TEST_F(PrivateProfileTest, NewFilesAreOwnerOnlyAndRewritesKeepPermissions)
{
    constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
    constexpr auto readable = ownerOnly | QFile::ReadGroup | QFile::ReadOther;
    constexpr auto anyone = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner
        | QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther
        | QFile::WriteOther | QFile::ExeOther;
    const struct {
        const char* name;
        std::optional<QFile::Permissions> before;
        QFile::Permissions expected;
    } cases[] = {
        { "new file", std::nullopt, ownerOnly },
        { "owner-only file", ownerOnly, ownerOnly },
        { "readable file", readable, readable },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        QFile::remove(path());
        if (c.before) {
            writeFile(path(), "[S]\n");
            QFile::setPermissions(path(), *c.before);
        }
        EXPECT_TRUE(PrivateProfile::writeString(path(), "S", "Password", "secret"));
        EXPECT_EQ(QFile::permissions(path()) & anyone, c.expected);
    }
}

TEST_F(PrivateProfileTest, ConcurrentWritersLoseNothing)
{
    constexpr int kThreads = 8;
    constexpr int kWrites = 200;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([this, t] {
            for (int i = 0; i < kWrites; ++i) {
                const QString key = QStringLiteral("k%1_%2").arg(t).arg(i);
                PrivateProfile::writeString(path(), "S", key, QString::number(i));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    const IniDocument document = PrivateProfile::read(path());
    int present = 0;
    for (int t = 0; t < kThreads; ++t) {
        for (int i = 0; i < kWrites; ++i)
            present += document.value("S", QStringLiteral("k%1_%2").arg(t).arg(i))
                == QString::number(i);
    }
    EXPECT_EQ(present, kThreads * kWrites);
}

TEST_F(PrivateProfileTest, ConcurrentUpdatesAreReadModifyWriteAtomic)
{
    constexpr int kThreads = 8;
    constexpr int kIncrements = 50;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([this] {
            for (int i = 0; i < kIncrements; ++i) {
                PrivateProfile::update(path(), [](IniDocument& d) {
                    d.setValue("Q", "Count",
                        QString::number(d.value("Q", "Count").value_or("0").toInt() + 1));
                    return true;
                });
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(PrivateProfile::getInt(path(), "Q", "Count", 0), kThreads * kIncrements);
}

TEST(IniDocumentTest, ListsSectionsAndKeepsUntouchedBytes)
{
    const QByteArray bytes = "; head\r\nx=1\r\n[A]\r\n\r\n[ b ]\r\nk=v\r\n[A]\r\n";
    IniDocument document(bytes);
    EXPECT_EQ(document.sectionNames(), QStringList({ "A", "b", "A" }));
    EXPECT_TRUE(document.hasSection("B"));
    EXPECT_EQ(document.toBytes(), bytes);
    EXPECT_FALSE(document.removeKey("b", "missing"));
    EXPECT_EQ(document.toBytes(), bytes);
    EXPECT_TRUE(document.removeSection("a"));
    EXPECT_EQ(document.toBytes(), "; head\r\nx=1\r\n[ b ]\r\nk=v\r\n");
}

} // namespace
} // namespace zelto
