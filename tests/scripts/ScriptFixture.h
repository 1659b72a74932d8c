#pragma once

// What the script tests share: two fixture servers, a local folder that is the script's LOCAL,
// and the lines and log records a run should give.

#include "FtpTestKit.h"
#include "TestFiles.h"
#include "distribution/WorkerThreads.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "scripts/ScriptProgress.h"
#include "scripts/ScriptRun.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace zelto::test {

// A progress line of a step: "srv: Make Directory OK (new)".
inline QString step(const QString& subject, int id, const QString& object = {})
{
    return subject + StringTable::text(id) + (object.isEmpty() ? QString() : " (" + object + ")");
}

// The lines and log records of a run, in the order of its steps. A reason or an error text that
// ends in "*" stands for every text that begins with the rest.
struct Expected {
    QStringList lines;
    std::vector<int> logged;

    Expected& ok(const QString& subject, int id, const QString& object = {})
    {
        lines += step(subject, id, object);
        return log(id);
    }
    Expected& fail(
        const QString& subject, int id, const QString& object, const QString& reason = {})
    {
        error(step(subject, id, object) + (reason.isEmpty() ? QString() : " - " + reason));
        return log(id);
    }
    Expected& error(const QString& text)
    {
        lines += { QStringLiteral("========"), QStringLiteral("ERROR!"), text,
            QStringLiteral("========"), QString() };
        return *this;
    }
    Expected& opened(const QString& subject)
    {
        return ok(subject, ids::kLogInternetConnectionOk).ok(subject, ids::kLogFtpConnectionOk);
    }
    Expected& closed(const QString& subject) { return ok(subject, ids::kLogFtpConnectionClosed); }
    Expected& then(const Expected& more)
    {
        lines += more.lines;
        logged.insert(logged.end(), more.logged.begin(), more.logged.end());
        return *this;
    }

private:
    Expected& log(int id)
    {
        logged.push_back(id);
        return *this;
    }
};

inline ::testing::AssertionResult sameLines(const QStringList& actual, const QStringList& expected)
{
    for (qsizetype i = 0; i < std::max(actual.size(), expected.size()); ++i) {
        const QString got = actual.value(i, QStringLiteral("<none>"));
        const QString want = expected.value(i, QStringLiteral("<none>"));
        if (want.endsWith(u'*') ? !got.startsWith(want.chopped(1)) : got != want)
            return ::testing::AssertionFailure()
                << "line " << i << ": got \"" << got.toStdString() << "\", wanted \""
                << want.toStdString() << "\"\nall lines:\n"
                << actual.join(u'\n').toStdString();
    }
    return ::testing::AssertionSuccess();
}

class ScriptFixture : public FtpTest {
protected:
    static constexpr auto kRunDeadline = std::chrono::seconds(60);

    ScriptFixture() : FtpTest(5) { }
    void SetUp() override
    {
        FtpTest::SetUp();
        if (IsSkipped())
            return;
        ASSERT_TRUE(local_.isValid() && scripts_.isValid());
        SettingsStore::set(settings::config::kDataDir, local_.path());
        a_ = std::make_unique<FtpServer>();
        b_ = std::make_unique<FtpServer>();
    }

    // "open NAME 127.0.0.1 zelto secret PORT".
    [[nodiscard]] static QString open(const QString& name, const FtpServer& server)
    {
        const FtpUser& user = server.users().front();
        return QStringLiteral("open %1 %2 %3 %4 %5")
            .arg(name, FtpServer::host(), user.name, user.password)
            .arg(server.port());
    }

    [[nodiscard]] QString writeScript(const QStringList& lines) const
    {
        const QString path = scripts_.filePath(QStringLiteral("run.cmd"));
        writeFile(path, lines.join(u'\n').toUtf8());
        return path;
    }

    std::unique_ptr<ScriptRun> start(const QString& path, std::shared_ptr<ScriptProgress> sink)
    {
        auto run = std::make_unique<ScriptRun>(recorder_.services, threads_, std::move(sink));
        run->start(path);
        return run;
    }

    // Runs the script to its end; its lines.
    QStringList run(const QString& path)
    {
        auto sink = std::make_shared<ScriptProgress>();
        const auto script = start(path, sink);
        EXPECT_TRUE(script->waitFinished(kRunDeadline));
        // A run succeeds when no step failed, and the sink hears so with a count of each: an
        // error block per failed step.
        const QStringList lines = sink->linesFrom(0);
        EXPECT_EQ(script->succeeded(), !lines.contains(QStringLiteral("ERROR!")));
        const auto tally = sink->outcome();
        EXPECT_TRUE(tally && tally->allSucceeded() == script->succeeded());
        EXPECT_TRUE(tally && tally->failed == lines.count(QStringLiteral("ERROR!")));
        EXPECT_TRUE(tally && tally->succeeded + 5 * tally->failed == lines.size())
            << "each success is one line, each failure a block of five";
        return lines;
    }

    // The lines, log records and outcome are the expected ones, and no password shows anywhere.
    void expectRun(const QStringList& lines, const Expected& expected)
    {
        EXPECT_TRUE(sameLines(lines, expected.lines));
        EXPECT_EQ(recorder_.logIds(), expected.logged);
        QStringList logged = lines;
        for (const LogEvent& event : recorder_.events())
            logged << event.field1 << event.field2 << event.field3 << event.detail;
        EXPECT_FALSE(logged.join(u'\n').contains(a_->users().front().password));
    }

    [[nodiscard]] QString local(const QString& name) const { return local_.filePath(name); }

    QTemporaryDir local_;
    QTemporaryDir scripts_;
    std::unique_ptr<FtpServer> a_;
    std::unique_ptr<FtpServer> b_;
    // Last, so that its workers have ended before what they use goes.
    WorkerThreads threads_;
};

} // namespace zelto::test
