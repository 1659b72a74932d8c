// The queue window over a queue file: its rows, sorting, the commands that send, reset, delete and
// clear, and a job appending to the file while the window deletes.

#include "TestFiles.h"
#include "TestNotifier.h"
#include "TestWait.h"
#include "distribution/WorkerThreads.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "queue/QueueStore.h"
#include "queue/ui/CQueueDlg.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QProcess>
#include <QPushButton>
#include <QSet>
#include <QTemporaryDir>
#include <QTreeView>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;
constexpr auto kDeadline = 30s;

struct Queued {
    const char* name;
    int attempts = 1;
    bool sending = false;
};

class QueueWindowTest : public testing::Test {
protected:
    [[nodiscard]] QString file() const { return dir_.filePath(QStringLiteral("zeltoQue.ini")); }
    [[nodiscard]] QueueStore store() const { return QueueStore(file()); }

    void fill(const std::vector<Queued>& items)
    {
        QueueStore queue = store();
        for (const Queued& queued : items) {
            QueueItem item;
            item.localName = QString::fromLatin1(queued.name);
            item.remoteName = item.localName.toUpper();
            item.source = QStringLiteral("Local");
            item.destination = QStringLiteral("host");
            item.reason = QStringLiteral("refused");
            for (int n = 0; n < queued.attempts; ++n)
                ASSERT_TRUE(queue.appendFailed(item));
            if (queued.sending) {
                ASSERT_TRUE(queue.markSending(*queue.find(item)));
            }
        }
    }

    // A window over the file, once it has read it.
    std::unique_ptr<CQueueDlg> open()
    {
        auto window
            = std::make_unique<CQueueDlg>(store(), threads_, notifier_, [this] { ++sends_; });
        window->show();
        idle(*window);
        return window;
    }

    static void idle(const CQueueDlg& window)
    {
        ASSERT_TRUE(waitUntil([&] { return !window.busy(); }, kDeadline));
    }

    static QStringList column(CQueueDlg& window, int column)
    {
        QStringList texts;
        for (const QueueItem& item : window.rows().items())
            texts.append(QueueRowsModel::text(item, column));
        return texts;
    }

    static void select(CQueueDlg& window, const std::vector<int>& rows)
    {
        for (const int row : rows) {
            window.list()->selectionModel()->select(window.rows().index(row, 0),
                QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }

    QStringList storedNames() const
    {
        QStringList names;
        for (const QueueItem& item : store().loadAll())
            names.append(item.localName);
        return names;
    }

    QTemporaryDir dir_;
    WorkerThreads threads_;
    TestNotifier notifier_;
    int sends_ = 0;
};

TEST_F(QueueWindowTest, RowsShowTheFileAndEachHeaderSortsUpThenDown)
{
    fill({ { "b.txt" }, { "A.txt", 3, true }, { "c.txt", 2 } });
    const auto window = open();
    QStringList first;
    for (int c = 0; c < QueueRowsModel::kColumns; ++c)
        first.append(window->rows().data(window->rows().index(1, c), Qt::DisplayRole).toString());
    EXPECT_EQ(
        first, QStringList({ "2", "3", "A.txt", "A.TXT", "Local", "host", "refused", "SENDING" }));

    const struct {
        int column;
        const char* up;
        const char* down;
    } cases[] = {
        { QueueRowsModel::Id, "b.txt A.txt c.txt", "c.txt A.txt b.txt" },
        { QueueRowsModel::Retries, "b.txt c.txt A.txt", "A.txt c.txt b.txt" },
        // Without regard to case.
        { QueueRowsModel::File, "A.txt b.txt c.txt", "c.txt b.txt A.txt" },
        { QueueRowsModel::Status, "b.txt c.txt A.txt", "A.txt b.txt c.txt" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.column);
        const auto sorted = open();
        QHeaderView* header = sorted->list()->header();
        Q_EMIT header->sectionClicked(c.column);
        EXPECT_EQ(column(*sorted, QueueRowsModel::File).join(u' '), QLatin1StringView(c.up));
        EXPECT_EQ(header->sortIndicatorOrder(), Qt::AscendingOrder);
        Q_EMIT header->sectionClicked(c.column);
        EXPECT_EQ(column(*sorted, QueueRowsModel::File).join(u' '), QLatin1StringView(c.down));
        EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
    }
    // Sorting is the list's alone.
    EXPECT_EQ(storedNames(), QStringList({ "b.txt", "A.txt", "c.txt" }));
}

TEST_F(QueueWindowTest, SendAllSaysSoAndStaysWhenNoRowIsIdle)
{
    const struct {
        std::vector<Queued> queue;
        bool sent;
    } cases[] = {
        { {}, false },
        { { { "a", 1, true }, { "b", 1, true } }, false },
        { { { "a", 1, true }, { "b" } }, true },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.queue.size());
        ASSERT_TRUE(store().clear());
        fill(c.queue);
        notifier_.reset({});
        sends_ = 0;
        const auto window = open();
        // The context menu's Send never closes.
        window->command(CQueueDlg::Send)->trigger();
        EXPECT_TRUE(window->isVisible());
        window->sendAllButton()->click();
        EXPECT_EQ(sends_, c.sent ? 2 : 0);
        EXPECT_EQ(window->isVisible(), !c.sent);
        const QStringList said
            = c.sent ? QStringList() : QStringList(StringTable::text(ids::kQueueEmptyOrSending));
        EXPECT_EQ(notifier_.messages, said + said);
    }
}

TEST_F(QueueWindowTest, ClearListAsksOnlyWithRows)
{
    auto window = open();
    window->clearButton()->click();
    EXPECT_TRUE(notifier_.yesNoQuestions.isEmpty());

    fill({ { "a" }, { "b" } });
    window = open();
    window->clearButton()->click();
    idle(*window);
    EXPECT_EQ(notifier_.yesNoQuestions, QStringList(StringTable::text(ids::kConfirmClearQueue)));
    EXPECT_EQ(window->rows().rowCount(), 2) << "answered No";
    notifier_.yes = true;
    window->clearButton()->click();
    idle(*window);
    EXPECT_EQ(window->rows().rowCount(), 0);
    EXPECT_EQ(store().count(), 0);
    EXPECT_EQ(open()->rows().rowCount(), 0);
}

TEST_F(QueueWindowTest, DeleteLeavesExactlyTheOthersAndResetMakesAllIdle)
{
    fill({ { "a" }, { "b", 1, true }, { "c" }, { "d", 2 }, { "e" } });
    const auto window = open();
    // Nothing selected: the file is written as it stands.
    window->command(CQueueDlg::Delete)->trigger();
    idle(*window);
    EXPECT_EQ(storedNames(), QStringList({ "a", "b", "c", "d", "e" }));

    select(*window, { 1, 3 });
    window->command(CQueueDlg::Delete)->trigger();
    idle(*window);
    EXPECT_EQ(column(*window, QueueRowsModel::File), QStringList({ "a", "c", "e" }));
    EXPECT_EQ(column(*window, QueueRowsModel::Id), QStringList({ "1", "2", "3" }));
    EXPECT_EQ(storedNames(), QStringList({ "a", "c", "e" }));

    fill({ { "c", 1, true } });
    window->command(CQueueDlg::Reset)->trigger();
    idle(*window);
    EXPECT_EQ(column(*window, QueueRowsModel::Status), QStringList({ "IDLE", "IDLE", "IDLE" }));
    for (const QueueItem& item : store().loadAll())
        EXPECT_EQ(item.status, QueueItem::kIdle) << item.localName.toStdString();
}

// Another process (a cron run, or a job of this one) appends while the window deletes row after
// row: every item it appended is still there, and only the rows deleted are gone.
TEST_F(QueueWindowTest, ItemsAppendedWhileTheWindowDeletesAreNeverLost)
{
    constexpr int kAppended = 300;
    std::vector<Queued> shown;
    std::vector<QByteArray> names;
    for (int n = 0; n < 40; ++n)
        names.push_back("shown-" + QByteArray::number(n));
    for (const QByteArray& name : names)
        shown.push_back({ name.constData() });
    fill(shown);
    const auto window = open();

    QProcess appender;
    appender.start(QStringLiteral(ZELTO_QUEUE_APPENDER),
        { file(), QStringLiteral("job"), QString::number(kAppended) });
    ASSERT_TRUE(appender.waitForStarted());
    QSet<QString> deleted;
    const auto deleteFirst = [&] {
        deleted.insert(window->rows().items().front().localName);
        select(*window, { 0 });
        window->command(CQueueDlg::Delete)->trigger();
        idle(*window);
    };
    while (appender.state() != QProcess::NotRunning && window->rows().rowCount() > 1)
        deleteFirst();
    ASSERT_TRUE(appender.state() == QProcess::NotRunning || appender.waitForFinished(60'000));
    ASSERT_EQ(appender.exitCode(), 0);
    deleteFirst();

    QSet<QString> expected;
    for (const QByteArray& name : names)
        expected.insert(QString::fromLatin1(name));
    for (int n = 0; n < kAppended; ++n)
        expected.insert(QStringLiteral("job-%1").arg(n));
    expected -= deleted;
    const QStringList stored = storedNames();
    EXPECT_EQ(QSet<QString>(stored.begin(), stored.end()), expected);
    EXPECT_EQ(stored.size(), expected.size());
    EXPECT_EQ(column(*window, QueueRowsModel::File), stored);
}

// A damaged file opens with what can be read, and Reset or Delete lose none of it.
TEST_F(QueueWindowTest, ADamagedFileOpensWithWhatCanBeReadAndKeepsIt)
{
    const struct {
        QByteArray text;
        int rows;
    } cases[] = {
        { QByteArray("\x00\xff\xfe garbage\n", 12) + "[QUEUE]\nNumQueues=2\n"
                + "[QUEUE1]\nLocalName=a\nNumTimes=-7\n[QUEUE2]\nLocalName=b\nStatus=999\n",
            2 },
        { "[QUEUE]\nNumQueues=99999999999\n[QUEUE1]\nLocalName=a\n",
            1 + QueueBatch::kMaxMissingItems },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        writeFile(file(), c.text);
        const auto window = open();
        EXPECT_EQ(window->rows().rowCount(), c.rows);
        QStringList readable;
        for (const QueueItem& item : window->rows().items()) {
            if (!item.localName.isEmpty())
                readable.append(item.localName);
        }
        window->command(CQueueDlg::Reset)->trigger();
        idle(*window);
        window->command(CQueueDlg::Delete)->trigger();
        idle(*window);
        for (const QString& name : readable)
            EXPECT_TRUE(storedNames().contains(name)) << name.toStdString();
    }
}

} // namespace
} // namespace zelto::test
