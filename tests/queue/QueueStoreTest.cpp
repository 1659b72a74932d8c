// The queue file as each operation leaves it, and what survives bad files.

#include "queue/QueueStore.h"

#include "TestFiles.h"
#include "platform/IniDocument.h"
#include "platform/PrivateProfile.h"
#include "platform/ProcessMark.h"
#include "queue/QueueDeletion.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <optional>

namespace zelto {
namespace {

using test::writeFile;

QueueItem named(const QString& name, const QString& reason = {})
{
    QueueItem item;
    item.localName = name;
    item.reason = reason;
    return item;
}

// A queue file of items named a, b, c... with only their names and attempts; keys added to the
// text go to the last item.
QByteArray queueOf(const std::vector<int>& attempts)
{
    QByteArray text = "[QUEUE]\nNumQueues=" + QByteArray::number(qsizetype(attempts.size())) + "\n";
    for (std::size_t i = 0; i < attempts.size(); ++i) {
        text += "[QUEUE" + QByteArray::number(qsizetype(i + 1)) + "]\nLocalName=" + char('a' + i)
            + "\nNumTimes=" + QByteArray::number(attempts[i]) + "\n";
    }
    return text;
}

QStringList namesOf(const std::vector<QueueItem>& items)
{
    QStringList names;
    for (const QueueItem& item : items)
        names.append(item.localName);
    return names;
}

class QueueStoreTest : public ::testing::Test {
protected:
    [[nodiscard]] QString path() const { return dir_.filePath(QStringLiteral("zeltoQue.ini")); }

    QTemporaryDir dir_;
};

TEST_F(QueueStoreTest, OperationsLeaveTheSectionsAsTheRulesSay)
{
    QueueItem full = named("a.txt", "refused");
    full.remoteName = "A.TXT";
    full.source = "Local";
    full.destination = "ftp.example.org";
    full.remDirFile = full.remDir = "/pub";
    full.locDirFile = "/home/me";
    full.password = "pw";
    full.login = "me";
    full.fileSize = "12";
    full.port = "21";
    const QString longReason(1100, u'x');
    using Lines = std::optional<QStringList>; // nothing: the section is gone
    struct Case {
        const char* what;
        std::optional<QByteArray> before; // nothing: no file
        std::function<void(QueueStore&)> change;
        QStringList names;
        std::vector<std::pair<QString, Lines>> sections;
    };
    const Case cases[] = {
        { "append to an absent file", std::nullopt, [&](QueueStore& s) { s.appendFailed(full); },
            { "a.txt" },
            { { "QUEUE1",
                QStringList { "NumTimes=1", "LocalName=a.txt", "RemoteName=A.TXT",
                    "RemDirFile=/pub", "LocDirFile=/home/me", "Reason=refused", "Password=pw",
                    "Login=me", "RemDir=/pub", "Source=Local", "Destination=ftp.example.org",
                    "FtpMethod=ZELTO_PUT", "FileSize=12", "Port=21", "Status=0" } } } },
        { "a second failure counts up",
            "[QUEUE]\nNumQueues=1\n[QUEUE1]\nLocalName=a\nReason=first\nNumTimes=1\nStatus=1\n",
            [](QueueStore& s) { s.appendFailed(named("a", "second")); }, { "a" },
            { { "QUEUE1",
                QStringList { "LocalName=a", "Reason=first", "NumTimes=2", "Status=0" } } } },
        { "remove the only item", queueOf({ 1 }), [](QueueStore& s) { s.removeSent(named("a")); },
            {}, { { "QUEUE1", QStringList {} } } },
        { "remove 2 of 3", queueOf({ 1, 2, 3 }), [](QueueStore& s) { s.removeSent(named("b")); },
            { "a", "c" },
            { { "QUEUE2", QStringList { "LocalName=c", "NumTimes=3" } },
                { "QUEUE3", QStringList {} } } },
        { "purge 1, 3, 2 with limit 2", queueOf({ 1, 3, 2 }),
            [](QueueStore& s) { s.purgeByAttempts(2); }, { "a", "c" },
            { { "QUEUE2", QStringList { "LocalName=c", "NumTimes=2" } },
                { "QUEUE3", QStringList {} } } },
        { "clear keeps the sections", queueOf({ 1, 1 }), [](QueueStore& s) { s.clear(); }, {},
            { { "QUEUE2", QStringList { "LocalName=b", "NumTimes=1" } } } },
        { "rewrite 4 of 5 keeps QUEUE5", queueOf({ 1, 1, 1, 1, 1 }),
            [](QueueStore& s) {
                auto rows = s.loadAll();
                rows.erase(rows.begin() + 2);
                s.rewrite(rows, 1);
            },
            { "a", "b", "d", "e" }, { { "QUEUE5", QStringList { "LocalName=e", "NumTimes=1" } } } },
        { "rewrite 2 of 5 deletes QUEUE3 only", queueOf({ 1, 1, 1, 1, 1 }),
            [](QueueStore& s) {
                const auto rows = s.loadAll();
                s.rewrite({ rows[0], rows[4] }, 3);
            },
            { "a", "e" },
            { { "QUEUE3", std::nullopt },
                { "QUEUE4", QStringList { "LocalName=d", "NumTimes=1" } } } },
        { "a section too long for the buffer is cut as it moves down",
            queueOf({ 1, 1 }) + "Reason=" + longReason.toUtf8() + "\nSource=x\n",
            [](QueueStore& s) { s.removeSent(named("a")); }, { "b" },
            { { "QUEUE1",
                QStringList { "LocalName=b", "NumTimes=1", "Reason=" + longReason.left(995) } } } },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        QFile::remove(path());
        if (c.before)
            writeFile(path(), *c.before);
        QueueStore store(path());
        c.change(store);
        EXPECT_EQ(namesOf(store.loadAll()), c.names);
        EXPECT_EQ(store.count(), c.names.size());
        const IniDocument file = PrivateProfile::read(path());
        for (const auto& [section, lines] : c.sections) {
            EXPECT_EQ(file.hasSection(section), lines.has_value()) << section.toStdString();
            if (lines) {
                EXPECT_EQ(file.sectionLines(section), *lines) << section.toStdString();
            }
        }
    }
}

// The process that marked an item as being sent is kept with that item: written by the mark, gone
// once the item is idle again, and moved with its row when the queue window rewrites the queue.
TEST_F(QueueStoreTest, TheMarkingProcessStaysWithItsItem)
{
    const QByteArray marked = "[QUEUE]\nNumQueues=2\n"
                              "[QUEUE1]\nLocalName=a\nStatus=1\nSendingBy=5 5\n"
                              "[QUEUE2]\nLocalName=b\nStatus=1\nSendingBy=7 7\n";
    const QString self = ProcessMark::current();
    const std::tuple<const char*, std::function<void(QueueStore&)>, QStringList> cases[] = {
        { "a mark names this process",
            [](QueueStore& s) { s.update([](QueueBatch& b) { b.markSending(1); }); },
            { self, "7 7" } },
        { "a count-up makes the item idle", [](QueueStore& s) { s.appendFailed(named("b")); },
            { "5 5", "" } },
        { "a reset makes every item idle", [](QueueStore& s) { s.resetAllIdle(); }, { "", "" } },
        { "a rewrite moves each mark with its row",
            [](QueueStore& s) {
                const auto rows = s.loadAll();
                s.rewrite({ rows[1] }, 1);
            },
            { "7 7" } },
    };
    for (const auto& [what, change, marks] : cases) {
        SCOPED_TRACE(what);
        writeFile(path(), marked);
        QueueStore store(path());
        change(store);
        QStringList found;
        for (const QueueItem& item : store.loadAll())
            found.append(item.sendingBy);
        EXPECT_EQ(found, marks);
    }
}

TEST_F(QueueStoreTest, ReadLimitsCutLongValues)
{
    writeFile(path(),
        "[QUEUE]\nNumQueues=1\n[QUEUE1]\nLocalName=" + QByteArray(300, 'n') + "\nPassword="
            + QByteArray(60, 'p') + "\nFtpMethod=ZELTO_PUT_AND_MORE_WORDS\nRemLogin=other\n");
    const auto window = QueueStore(path()).loadAll();
    IniDocument document = PrivateProfile::read(path());
    const auto sender = QueueBatch(document).items(QueueReader::Sender);
    ASSERT_EQ(window.size(), 1u);
    ASSERT_EQ(sender.size(), 1u);
    EXPECT_EQ(window[0].localName, QString(254, u'n'));
    EXPECT_EQ(window[0].password, QString(60, u'p'));
    EXPECT_EQ(window[0].remLogin, QString()); // not "ZELTO_XFER": the second site is not read
    EXPECT_EQ(sender[0].password, QString(49, u'p'));
    // 19 characters, and any word but the upload's and the download's is site-to-site.
    EXPECT_EQ(sender[0].ftpMethod, "ZELTO_PUT_AND_MORE_");
    EXPECT_EQ(sender[0].remLogin, "other");
}

TEST_F(QueueStoreTest, BadFilesReadWithoutHarmAndKeepTheirReadableItems)
{
    const QByteArray one = "[QUEUE1]\nLocalName=a\n";
    // Cut short, a count larger than the sections, a negative count, a count that is no number,
    // binary garbage.
    const std::pair<QByteArray, QStringList> cases[] = {
        { "[QUEUE]\nNumQueues=2\n" + one + "[QUEUE2]\nLocalNa", { "a", "" } },
        { "[QUEUE]\nNumQueues=3\n" + one, { "a", "", "" } },
        { "[QUEUE]\nNumQueues=-2\n" + one, {} },
        { "[QUEUE]\nNumQueues=abc\n" + one, {} },
        { QByteArray("\0\x01\xff\n[QUEUE]\nNumQueues=1\n", 24) + one + QByteArray("\xc3\x28\0", 3),
            { "a" } },
    };
    for (const auto& [file, names] : cases) {
        SCOPED_TRACE(file.left(24).toStdString());
        writeFile(path(), file);
        QueueStore store(path());
        EXPECT_EQ(namesOf(store.loadAll()), names);
        EXPECT_TRUE(store.appendFailed(named("new")));
        EXPECT_EQ(namesOf(store.loadAll()), names + QStringList { "new" });
    }
}

// A count far past the sections costs what the file holds, whether or not a section of its
// number is there: items without a section are read up to kMaxMissingItems in all.
TEST_F(QueueStoreTest, DamagedCountsCostNoMoreThanTheFile)
{
    constexpr int kMissing = QueueBatch::kMaxMissingItems;
    const struct {
        const char* count;
        std::vector<int> sections; // after QUEUE1, each holding an item
        int items;
    } cases[] = {
        { "2147483647", {}, 1 + kMissing },
        { "2147483647", { 2147483647 }, 1 + kMissing },
        { "-1", { -1 }, 0 },
        // Two gaps that together hold too many.
        { "1200", { 600, 1200 }, 600 + (kMissing - 598) },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.count) + ", sections " + std::to_string(c.sections.size()));
        QByteArray file = QByteArray("[QUEUE]\nNumQueues=") + c.count + "\n[QUEUE1]\nLocalName=a\n";
        for (const int number : c.sections)
            file += "[QUEUE" + QByteArray::number(number) + "]\nLocalName=z\n";
        writeFile(path(), file);
        QueueStore store(path());
        EXPECT_EQ(store.count(), c.items);
        const auto items = store.loadAll();
        ASSERT_EQ(items.size(), std::size_t(c.items));
        if (c.items > 1) {
            EXPECT_EQ(QStringList({ items.front().localName, items.back().localName }),
                QStringList({ "a", "" }));
        }
        EXPECT_TRUE(store.appendFailed(named("new")));
        EXPECT_EQ(store.find(named("new")), c.items + 1);
        // The count and the new item's section (its keys, most of them empty) are all that was
        // written: no section for an item that has none.
        EXPECT_LT(test::contents(path()).size(), file.size() + 200);
    }
}

// The window's Delete against a file that jobs changed since the window read it: what the jobs did
// stays, and only the rows deleted leave.
TEST(QueueDeletionTest, TheFileAsItIsNowKeepsWhatJobsDidMeanwhile)
{
    const auto items = [](const char* names) {
        std::vector<QueueItem> list;
        for (const char* c = names; *c != 0; ++c)
            list.push_back(named(QString(QChar(*c))));
        return list;
    };
    const struct {
        const char* kept;
        const char* deleted;
        const char* current;
        const char* after;
    } cases[] = {
        { "ac", "b", "abc", "ac" },
        // Appended since the window opened: kept, after the rows shown.
        { "a", "b", "abde", "ade" },
        // Sent since: it does not come back.
        { "ac", "b", "ab", "a" },
        // The window's order is written.
        { "ca", "", "ac", "ca" },
        // One transfer twice in a hand-made file: one row each.
        { "a", "a", "aa", "a" },
        { "", "", "", "" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.kept) + " - " + c.deleted + " in " + c.current);
        const auto rows = QueueDeletion::merged(items(c.kept), items(c.deleted), items(c.current));
        EXPECT_EQ(namesOf(rows).join(QString()), QString::fromLatin1(c.after));
        for (std::size_t i = 0; i < rows.size(); ++i)
            EXPECT_EQ(rows[i].position, int(i + 1));
    }

    // The file's values win over the window's: a count-up by a job is kept.
    std::vector<QueueItem> current = items("ab");
    current[0].numTimes = 4;
    const auto rows = QueueDeletion::merged(items("a"), items("b"), current);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].numTimes, 4);
}

} // namespace
} // namespace zelto
