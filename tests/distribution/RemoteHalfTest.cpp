// The remote half of the browser against a fixture server, driven as a user would: what the
// list shows, and what the rename, delete, filter and double click ask, do and leave alone.

#include "distribution/ui/RemoteHalf.h"

#include "FtpTestKit.h"
#include "TestNotifier.h"
#include "distribution/WorkerThreads.h"
#include "distribution/ui/CRemFilesView.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "settings/SettingsKeys.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

class RemoteHalfTest : public FtpTest {
protected:
    void SetUp() override
    {
        FtpTest::SetUp();
        if (IsSkipped())
            return;
        server_ = std::make_unique<FtpServer>();
        for (const auto* name : { "a.txt", "b.zip", "c.txt" }) {
            QFile file(server_->home() + u'/' + QLatin1String(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            ASSERT_EQ(file.write(name), 5);
        }
        ASSERT_TRUE(QDir(server_->home()).mkdir(QStringLiteral("sub")));
        half_ = std::make_unique<RemoteHalf>(recorder_.services, notifier_, threads_);
        half_->setPrompt([this](const QString&, const QString&, const QString&) {
            return answers_.empty() ? std::nullopt : std::optional(answers_.takeFirst());
        });
        half_->connectTo(siteOf(*server_));
        ASSERT_TRUE(waitUntil([&] { return idle() && !shown().isEmpty(); }, 10s));
        recorder_.clear();
    }

    [[nodiscard]] bool idle() const { return !half_->isBusy(); }
    [[nodiscard]] QStringList shown() const
    {
        QStringList names;
        for (const auto& row : half_->files()->rows())
            names.append(row.name);
        names.sort();
        return names;
    }
    [[nodiscard]] QStringList onDisk() const
    {
        return QDir(server_->home()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    }
    void select(const QStringList& names)
    {
        auto* view = half_->files();
        view->clearSelection();
        for (int row = 0; row < view->model()->rowCount(); ++row) {
            const auto index = view->model()->index(row, 0);
            if (names.contains(view->rowAt(index).name))
                view->selectionModel()->select(
                    index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }

    WorkerThreads threads_ { 0 };
    TestNotifier notifier_;
    QStringList answers_; // what the prompts are answered, in turn
    std::unique_ptr<FtpServer> server_;
    std::unique_ptr<RemoteHalf> half_;
};

TEST_F(RemoteHalfTest, TheFolderIsListedWithItsFoldersAndFiles)
{
    EXPECT_EQ(shown(), (QStringList { "a.txt", "b.zip", "c.txt", "sub" }));
    EXPECT_EQ(half_->folder(), QStringLiteral("/"));
    half_->openFolder(QStringLiteral("/sub"));
    ASSERT_TRUE(waitUntil([&] { return idle() && shown().isEmpty(); }, 10s));
    EXPECT_EQ(half_->folder(), QStringLiteral("/sub"));
    half_->parentFolder();
    ASSERT_TRUE(waitUntil([&] { return idle() && !shown().isEmpty(); }, 10s));
    EXPECT_EQ(half_->folder(), QStringLiteral("/"));
}

TEST_F(RemoteHalfTest, AFilterNamesTheFileColumnAndShowsOnlyItsFiles)
{
    answers_ = { QStringLiteral("*.zip") };
    half_->filter();
    ASSERT_TRUE(waitUntil([&] { return idle() && shown().size() == 2; }, 10s));
    EXPECT_EQ(half_->files()->fileTitle(), QStringLiteral("File (*.zip)"));
    EXPECT_EQ(shown(), (QStringList { "b.zip", "sub" }));

    answers_ = { QString() };
    half_->filter();
    ASSERT_TRUE(waitUntil([&] { return idle() && shown().size() == 4; }, 10s));
    EXPECT_EQ(half_->files()->model()->headerData(0, Qt::Horizontal).toString(),
        StringTable::text(ids::kColumnFile));
}

TEST_F(RemoteHalfTest, RenamingToTheSameNameDoesNothing)
{
    select({ QStringLiteral("a.txt") });
    answers_ = { QStringLiteral("a.txt") };
    half_->renameSelected();
    ASSERT_TRUE(settle());
    EXPECT_TRUE(notifier_.questions.empty());
    EXPECT_TRUE(recorder_.logIds().empty());
    EXPECT_EQ(server_->commandCount(QStringLiteral("RNFR")), 0);

    // A real rename asks, renames on the server and shows the new name.
    notifier_.answers = { Answer::Accepted };
    answers_ = { QStringLiteral("z.txt") };
    half_->renameSelected();
    ASSERT_TRUE(waitUntil([&] { return idle() && shown().contains("z.txt"); }, 10s));
    EXPECT_EQ(onDisk(), (QStringList { "b.zip", "c.txt", "sub", "z.txt" }));
    EXPECT_EQ(recorder_.logIds(), std::vector<int> { ids::kLogRenamingOk });
}

TEST_F(RemoteHalfTest, CancelAtTheFirstDeleteQuestionDeletesNothing)
{
    select({ QStringLiteral("a.txt"), QStringLiteral("b.zip"), QStringLiteral("c.txt") });
    notifier_.answers = { Answer::Cancelled };
    half_->deleteSelected();
    ASSERT_TRUE(settle());
    ASSERT_EQ(notifier_.questions.size(), 1U);
    EXPECT_EQ(notifier_.questions.front().caption, StringTable::text(ids::kDeleteCaption));
    EXPECT_TRUE(notifier_.questions.front().middleEnabled) << "three rows offer All";
    EXPECT_EQ(onDisk().size(), 4);
    EXPECT_EQ(server_->commandCount(QStringLiteral("DELE")), 0);

    // Yes, then All: every row goes, with no third question.
    notifier_.answers = { Answer::Accepted, Answer::Middle };
    half_->deleteSelected();
    ASSERT_TRUE(waitUntil([&] { return idle() && shown().size() == 1; }, 10s));
    EXPECT_EQ(notifier_.questions.size(), 3U);
    EXPECT_EQ(onDisk(), QStringList { "sub" });
    EXPECT_EQ(recorder_.logIds(), std::vector<int>(3, ids::kLogDeletionOk));
}

TEST_F(RemoteHalfTest, ADoubleClickGetsOnlyWhenRemoteDblClickSaysTransfer)
{
    QSignalSpy gets(half_.get(), &RemoteHalf::getRequested);
    const FileRow file { QStringLiteral("a.txt"), 5, false, {} };
    Q_EMIT half_->files()->rowActivated(file);
    EXPECT_EQ(gets.count(), 0) << "RemoteDblClick absent";
    SettingsStore::set(settings::config::kRemoteDblClick, QStringLiteral("TRANSFER"));
    Q_EMIT half_->files()->rowActivated(file);
    ASSERT_EQ(gets.count(), 1);
    EXPECT_EQ(gets.front().front().toStringList(), QStringList { "a.txt" });
}

} // namespace
} // namespace zelto::test
