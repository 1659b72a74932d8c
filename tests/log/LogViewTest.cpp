#include "TempSettings.h"
#include "TestFiles.h"
#include "TestNotifier.h"
#include "TestWait.h"
#include "log/LogWriter.h"
#include "log/ui/CLogView.h"
#include "log/ui/LogPageLayout.h"
#include "log/ui/LogTableModel.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "settings/SettingsStore.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QPaintEngine>
#include <QPainter>
#include <QPrinter>
#include <QTextItem>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <thread>
#include <tuple>
#include <vector>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

class LogViewTest : public testing::Test {
protected:
    LogViewTest() { view_->resize(900, 400); }

    // A record with its own stamps, so that saved lines are known byte for byte.
    void write(int id, const QString& field1, const QString& detail = {})
    {
        writer_.write(LogEvent { id, field1, QStringLiteral("site"), QStringLiteral("/pub"), detail,
            QStringLiteral("10:00"), QStringLiteral("01/02/2024") });
    }
    // The writer queues its records to the view; deliver what is queued.
    void deliver() { QCoreApplication::sendPostedEvents(view_.get(), QEvent::MetaCall); }

    [[nodiscard]] const LogTableModel& model() const
    {
        return *static_cast<const LogTableModel*>(view_->model());
    }
    [[nodiscard]] QStringList column(int column) const
    {
        QStringList texts;
        for (int row = 0; row < model().rowCount(); ++row)
            texts.append(model().index(row, column).data().toString());
        return texts;
    }
    [[nodiscard]] QString logFile() const
    {
        return settings_.appDataDir() + QStringLiteral("/log1.log");
    }

    // Answers the file dialogs with `path` and counts how often they were shown.
    void chooseFile(const QString& path)
    {
        view_->setFileChooser([this, path](QWidget*, CLogView::FileAction) {
            ++dialogs_;
            return path;
        });
    }

    test::TempSettings settings_;
    TestNotifier notifier_;
    LogWriter writer_ { notifier_ };
    std::unique_ptr<CLogView> view_ = std::make_unique<CLogView>(writer_, notifier_);
    int dialogs_ = 0;
};

TEST_F(LogViewTest, FilterWritesViewKeyAndShowsMatchingRecordsInOrder)
{
    write(ids::kLogFtpConnectionOk, QStringLiteral("a"));
    write(ids::kLogFtpConnectionFailed, QStringLiteral("b"));
    // The same text, the closed connection's, once a success and once a failure.
    write(ids::kLogSessionEnded, QStringLiteral("c"));
    write(ids::kLogInternetConnectionClosed, QStringLiteral("d"));
    deliver();

    std::optional<LogFilter> told;
    QObject::connect(
        view_.get(), &CLogView::filterChanged, [&](LogFilter filter) { told = filter; });
    const std::tuple<LogFilter, const char*, QStringList> cases[] = {
        { LogFilter::Successful, "SUCCESS", { "a", "c" } },
        { LogFilter::Unsuccessful, "UNSUCCESS", { "b", "d" } },
        { LogFilter::All, "ALL", { "a", "b", "c", "d" } },
    };
    for (const auto& [filter, word, shown] : cases) {
        view_->setFilter(filter);
        EXPECT_EQ(SettingsStore::get(settings::log::kView), QLatin1StringView(word));
        EXPECT_EQ(column(LogTableModel::Field1), shown) << word;
        EXPECT_EQ(told, filter) << word;
    }

    // Records that arrive later follow the filter chosen here, and come back when it widens.
    view_->setFilter(LogFilter::Successful);
    write(ids::kLogFtpTransferFailed, QStringLiteral("e"));
    write(ids::kLogFtpTransferComplete, QStringLiteral("f"));
    deliver();
    EXPECT_EQ(column(LogTableModel::Field1), QStringList({ "a", "c", "f" }));
    view_->setFilter(LogFilter::All);
    EXPECT_EQ(column(LogTableModel::Field1), QStringList({ "a", "b", "c", "d", "e", "f" }));
    EXPECT_EQ(column(LogTableModel::Seq), QStringList({ "1", "2", "3", "4", "5", "6" }));
    EXPECT_EQ(column(LogTableModel::Message).value(2),
        StringTable::text(ids::kLogInternetConnectionClosed));
}

TEST_F(LogViewTest, HeadersSortAndTheMenuCopiesSelectsAndClearsAfterAsking)
{
    write(ids::kLogFtpTransferComplete, QStringLiteral("b"));
    write(ids::kLogFtpTransferFailed, QStringLiteral("a"), QStringLiteral("550 denied"));
    write(ids::kLogMakeDirectoryOk, QStringLiteral("C"));
    deliver();

    // Each step: a sort, then a record written (or none), and the rows after it.
    const std::tuple<int, Qt::SortOrder, const char*, QStringList> steps[] = {
        { LogTableModel::Field1, Qt::AscendingOrder, nullptr, { "a", "b", "C" } },
        { LogTableModel::Field1, Qt::DescendingOrder, nullptr, { "C", "b", "a" } },
        // A later record takes its place in the order shown, not the last row.
        { LogTableModel::Field1, Qt::DescendingOrder, "bb", { "C", "bb", "b", "a" } },
        // The event text, equal texts in the order of writing.
        { LogTableModel::Message, Qt::AscendingOrder, nullptr, { "b", "bb", "a", "C" } },
        { LogTableModel::Time, Qt::AscendingOrder, nullptr, { "b", "a", "C", "bb" } },
    };
    for (const auto& [sortColumn, order, added, rows] : steps) {
        view_->sortByColumn(sortColumn, order);
        if (added) {
            write(ids::kLogFtpTransferComplete, QLatin1StringView(added));
            deliver();
        }
        EXPECT_EQ(column(LogTableModel::Field1), rows) << sortColumn << " " << order;
    }
    // Numbers by value: 10 after 9, not after 1.
    for (int i = 0; i < 8; ++i)
        write(ids::kLogFtpConnectionOk, QStringLiteral("n%1").arg(i));
    deliver();
    view_->sortByColumn(LogTableModel::Seq, Qt::DescendingOrder);
    EXPECT_EQ(column(LogTableModel::Seq).mid(0, 3), QStringList({ "12", "11", "10" }));
    view_->sortByColumn(LogTableModel::Seq, Qt::AscendingOrder);

    // Copy puts the selected rows, in the order shown, as tab-separated lines.
    const auto action = [&](const QString& text) -> QAction* {
        for (QAction* candidate : view_->actions())
            if (candidate->text() == text)
                return candidate;
        ADD_FAILURE() << text.toStdString();
        return nullptr;
    };
    view_->selectionModel()->select(
        model().index(2, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    view_->selectionModel()->select(
        model().index(1, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    action(QStringLiteral("&Copy"))->trigger();
    const QString copied = StringTable::text(ids::kLogFtpTransferFailed)
        + QStringLiteral("\t2\t10:00\t01/02/2024\ta\tsite\t/pub\t550 denied\n")
        + StringTable::text(ids::kLogMakeDirectoryOk)
        + QStringLiteral("\t3\t10:00\t01/02/2024\tC\tsite\t/pub\t\n");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), copied);
    action(QStringLiteral("Select &All"))->trigger();
    EXPECT_EQ(view_->selectionModel()->selectedRows().size(), model().rowCount());

    // Clear asks first; No keeps every row.
    const int rows = model().rowCount();
    notifier_.yes = false;
    action(QStringLiteral("C&lear"))->trigger();
    EXPECT_EQ(notifier_.yesNoQuestions.size(), 1);
    EXPECT_EQ(model().rowCount(), rows);
    notifier_.yes = true;
    action(QStringLiteral("C&lear"))->trigger();
    EXPECT_EQ(model().rowCount(), 0);
    EXPECT_FALSE(view_->tabKeyNavigation()) << "Tab must leave the log";
}

TEST_F(LogViewTest, OpenedRecordsJoinWithNewNumbersAndStayOutOfTheLogFile)
{
    write(ids::kLogFtpConnectionOk, QStringLiteral("before"));
    const QByteArray fileBefore = contents(logFile());
    ASSERT_FALSE(fileBefore.isEmpty());

    const QString earlier = settings_.root() + QStringLiteral("/earlier.log");
    writeFile(earlier,
        "anything: the first line is not checked\n"
        "32863\t09:00\t31/01/2024\tx.txt\tsite\t/pub\tdone\n"
        "32864\t09:01\t31/01/2024\ty.txt\tsite\t/pub\t550 denied\n"
        "32863\t09:02\t31/01/2024\tz.txt\tsite\t/pub\tlost"); // no line feed
    chooseFile(earlier);
    view_->openLog();
    deliver();

    EXPECT_EQ(column(LogTableModel::Seq), QStringList({ "1", "2", "3" }));
    EXPECT_EQ(column(LogTableModel::Field1), QStringList({ "before", "x.txt", "y.txt" }));
    EXPECT_EQ(column(LogTableModel::Time).mid(1), QStringList({ "09:00", "09:01" }));
    EXPECT_EQ(contents(logFile()), fileBefore);

    chooseFile({}); // the user cancels
    view_->openLog();
    deliver();
    EXPECT_EQ(model().rowCount(), 3);
}

TEST_F(LogViewTest, SaveWritesOnlyShownRowsAndAsksBeforeReplacing)
{
    const QByteArray failureOnly = "FTP_SERVER_FILE\n"
                                   "32864\t10:00\t01/02/2024\tb.txt\tsite\t/pub\t550 denied\n";
    const QByteArray old = "old contents\n";
    struct Case {
        const char* name;
        bool records;
        bool exists;
        Answer answer;
        QByteArray expected;
        int dialogs;
        std::size_t questions;
    };
    const Case cases[] = {
        { "new file", true, false, Answer::Accepted, failureOnly, 1, 0 },
        { "replace accepted", true, true, Answer::Accepted, failureOnly, 1, 1 },
        { "replace cancelled", true, true, Answer::Cancelled, old, 1, 1 },
        { "empty list", false, true, Answer::Accepted, old, 0, 0 },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        notifier_.yes = true;
        view_->clearLog();
        if (c.records) {
            write(ids::kLogFtpTransferComplete, QStringLiteral("a.txt"));
            write(
                ids::kLogFtpTransferFailed, QStringLiteral("b.txt"), QStringLiteral("550 denied"));
            deliver();
        }
        view_->setFilter(LogFilter::Unsuccessful);
        const QString path
            = settings_.root() + u'/' + QLatin1StringView(c.name) + QStringLiteral(".log");
        if (c.exists)
            writeFile(path, old);
        notifier_.reset({ c.answer });
        dialogs_ = 0;
        chooseFile(path);

        view_->saveLog();

        EXPECT_EQ(contents(path), c.expected);
        EXPECT_EQ(dialogs_, c.dialogs);
        EXPECT_TRUE(notifier_.messages.isEmpty());
        ASSERT_EQ(notifier_.questions.size(), c.questions);
        EXPECT_TRUE(!c.questions
            || notifier_.questions[0].text == StringTable::text(ids::kFileExistsOverwrite));
        view_->setFilter(LogFilter::All);
    }
}

TEST_F(LogViewTest, RecordsFromWorkerThreadsArriveInOrderAndTheLastIsScrolledIntoView)
{
    view_->show();
    constexpr int kThreads = 3;
    constexpr int kEach = 400;
    {
        std::vector<std::jthread> workers;
        for (int t = 0; t < kThreads; ++t) {
            workers.emplace_back([this, t] {
                for (int i = 0; i < kEach; ++i)
                    write(ids::kLogFtpTransferComplete, QString::number(t));
            });
        }
    }
    ASSERT_TRUE(test::waitUntil([&] { return model().rowCount() == kThreads * kEach; }, 10s));
    for (int row = 0; row < model().rowCount(); ++row)
        ASSERT_EQ(model().recordAt(row).seq, quint32(row + 1)) << "row " << row;
    const QRect last = view_->visualRect(model().index(model().rowCount() - 1, 0));
    EXPECT_TRUE(view_->viewport()->rect().contains(last)) << last.y();
}

// An image that records the texts a painter draws on it, with where each begins.
class TextRecorder final : public QImage {
public:
    TextRecorder(int width, int height) : QImage(width, height, QImage::Format_RGB32) { }

    [[nodiscard]] QPaintEngine* paintEngine() const override { return &engine_; }
    [[nodiscard]] const QList<std::pair<QPointF, QString>>& lines() const { return engine_.lines; }

private:
    struct Engine final : QPaintEngine {
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState&) override { }
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override { }
        void drawTextItem(const QPointF& at, const QTextItem& item) override
        {
            lines.append({ at, item.text() });
        }
        [[nodiscard]] Type type() const override { return User; }
        QList<std::pair<QPointF, QString>> lines;
    };

    mutable Engine engine_;
};

TEST(LogPageLayout, PagesCarryHeaderAndTheirShareOfRows)
{
    LogRecord record { .seq = 7,
        .field1 = "b.txt",
        .field2 = "site",
        .field3 = "/pub",
        .time = "10:01",
        .date = "01/02/2024",
        .detail = "550 denied" };
    record.setMessage(ids::kLogFtpTransferFailed);
    EXPECT_EQ(LogPageLayout::rowLine(record),
        StringTable::text(ids::kLogFtpTransferFailed)
            + QStringLiteral(" 01/02/2024 10:01 b.txt site /pub 550 denied"));

    const QFont font(QStringLiteral("monospace"), 10);
    TextRecorder probe(4000, 1000);
    const int lineHeight = LogPageLayout(font, probe).lineHeight();
    QStringList rows;
    for (int i = 0; i < 16; ++i)
        rows.append(QStringLiteral("row %1").arg(i));

    // Page, rows, and the header and the page's rows drawn.
    const std::tuple<int, qsizetype, QStringList> cases[] = {
        { 1, 16, { "Page No 1", "row 0", "row 1", "row 2", "row 3", "row 4", "row 5", "row 6" } },
        { 3, 16, { "Page No 3", "row 14", "row 15" } },
        { 1, 3, { "Page No 1", "row 0", "row 1", "row 2" } },
        { 1, 0, {} },
    };
    for (const auto& [page, count, expected] : cases) {
        SCOPED_TRACE(page);
        TextRecorder device(4000, lineHeight * 12 + lineHeight / 2);
        const LogPageLayout layout(font, device);
        // Twelve whole lines: the header block takes five, seven are left for rows.
        EXPECT_EQ(layout.rowsPerPage(), 7);
        EXPECT_EQ(layout.pageCount(count), (count + 6) / 7);
        {
            QPainter painter(&device);
            layout.drawPage(painter, page, rows.mid(0, count));
        }
        // The header on the third line, the page's first row on the sixth, one line each.
        const int ascent = QFontMetrics(QFont(font, &device), &device).ascent();
        QStringList drawn;
        for (const auto& [at, text] : device.lines()) {
            EXPECT_EQ(
                at, QPointF(0, (drawn.isEmpty() ? 2 : drawn.size() + 4) * lineHeight + ascent))
                << text.toStdString();
            drawn.append(text);
        }
        EXPECT_EQ(drawn, expected);
    }
}

TEST_F(LogViewTest, PrintingDrawsThePagesOfThePrintersRange)
{
    QPrinter printer(QPrinter::ScreenResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    const int perPage = LogPageLayout(view_->font(), printer).rowsPerPage();
    for (int i = 0; i < 2 * perPage + 1; ++i)
        write(ids::kLogFtpTransferComplete, QString::number(i));
    deliver();

    // The printer's range (0 to 0: all), the pages printed.
    const std::tuple<int, int, int> cases[] = { { 0, 0, 3 }, { 2, 2, 1 }, { 2, 9, 2 } };
    for (const auto& [from, to, pages] : cases) {
        const QString pdf = settings_.root() + QStringLiteral("/log%1.pdf").arg(from);
        printer.setOutputFileName(pdf);
        printer.setFromTo(from, to);
        view_->printDocument(&printer);
        EXPECT_EQ(contents(pdf).count("/Type /Page\n"), pages) << from;
    }
}

} // namespace
} // namespace zelto::test
