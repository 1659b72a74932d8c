// The put engine against the pyftpdlib fixture: where files land under each FTPDirTree mode, the
// folders it makes, the refusals (folder, overwrite, login), the cancel flag, and what a failure
// leaves in the file entry for the bookkeeping.

#include "distribution/PutEngine.h"

#include "EngineFixture.h"
#include "app/SettingsStore.h"
#include "distribution/FailureLogSink.h"
#include "ftp/FtpErrors.h"
#include "ftp/JobServices.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QFile>

#include <atomic>

namespace zelto::test {
namespace {

using Text = JobProgress::Text;

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

std::vector<int> resultsOf(const std::vector<FileEntry>& files)
{
    std::vector<int> results;
    for (const auto& entry : files)
        results.push_back(entry.result);
    return results;
}

class PutEngineTest : public EngineFixture {
protected:
    // Runs the engine over `files` against the fixture, into `folder` of its home.
    int put(std::vector<FileEntry>& files, const QString& folder, const EngineOptions& options)
    {
        auto job = session();
        return runPutEngine(*job, siteOf(*server_, u'/' + folder), files, options);
    }

    void makeRemoteFolder(const QString& folder) { ASSERT_TRUE(QDir(home()).mkpath(folder)); }
};

TEST_F(PutEngineTest, EachModePlacesNestedFilesAndMakesEachFolderOnce)
{
    SettingsStore::set(settings::config::kRenameLongFileNames, QStringLiteral("YES"));
    SettingsStore::set(settings::config::kDeletePut, QStringLiteral("YES"));
    const std::vector<FileEntry> files = {
        localFile(QStringLiteral("site"), QStringLiteral("index.html"), 1000),
        localFile(QStringLiteral("site"), QStringLiteral("longname.backup.txt"), 10),
        localFile(QStringLiteral("site/img"), QStringLiteral("logo.gif"), 300'000),
        localFile(QStringLiteral("site/img"), QStringLiteral("icon.png"), 0),
        localFile(QStringLiteral("site/css"), QStringLiteral("style.css"), 300),
        localFile(QStringLiteral("other/img"), QStringLiteral("b.gif"), 5),
    };
    // Each file's path under the remote folder: by its folder's last part, or by the whole
    // local folder (without its leading "/").
    const QStringList names
        = { "index.html", "longna~1.bac", "logo.gif", "icon.png", "style.css", "b.gif" };
    const QStringList lastParts = { "site", "site", "img", "img", "css", "img" };
    QStringList noPath;
    QStringList lastDir;
    QStringList fullPath;
    for (size_t i = 0; i < files.size(); ++i) {
        noPath.append(names[i]);
        lastDir.append(lastParts[i] + u'/' + names[i]);
        fullPath.append(files[i].localFolder.mid(1) + u'/' + names[i]);
    }
    struct Case {
        const char* value;
        bool keepFolder;
        QStringList expected;
    };
    const Case cases[] = {
        { settings::config::kDirTreeNoPath, false, noPath },
        { settings::config::kDirTreeLastDir, false, lastDir },
        { settings::config::kDirTreeFullPath, false, fullPath },
        { "unknown", true, lastDir }, // a selection sent with its folder
    };
    int n = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value);
        SettingsStore::set(settings::config::kFtpDirTree, QString::fromUtf8(c.value));
        const auto folder = QStringLiteral("m%1").arg(++n);
        makeRemoteFolder(folder);
        recorder_.clear();
        static_cast<void>(newCommands());

        auto sent = files;
        EngineOptions options;
        options.keepFolder = c.keepFolder;
        options.overwriteAllowed = true;
        ASSERT_EQ(put(sent, folder, options), kEngineRan);

        const auto root = home() + u'/' + folder;
        EXPECT_EQ(filesUnder(root), sorted(c.expected));
        for (size_t i = 0; i < sent.size(); ++i) {
            EXPECT_EQ(sent[i].result, FileEntry::kSent) << sent[i].message.toStdString();
            // An entry without a folder was sent to the connection's folder, and says so.
            EXPECT_EQ(sent[i].remoteFolder, u'/' + folder);
            EXPECT_EQ(sent[i].transferred, sent[i].size);
            EXPECT_TRUE(sameBytes(
                sent[i].localFolder + u'/' + sent[i].localName, root + u'/' + c.expected[int(i)]));
        }

        // Each folder made once, logged once; one listing at most; nothing per file but STOR.
        const auto made = foldersUnder(root);
        QStringList madePaths;
        for (const auto& path : made)
            madePaths.append(u'/' + folder + u'/' + path);
        EXPECT_EQ(sorted(logged(ids::kLogMakeDirectoryOk)), madePaths);
        auto commands = newCommands();
        EXPECT_EQ(commands["MKD"], made.size());
        EXPECT_LE(commands["LIST"], 1);
        EXPECT_EQ(commands["CWD"], 1); // the job's folder at the connect
        EXPECT_EQ(commands["SIZE"] + commands["MDTM"], 0);
        EXPECT_EQ(commands["STOR"], int(files.size()));
        EXPECT_EQ(commands["USER"], 1);

        QStringList completed;
        for (const auto& event : recorder_.events())
            if (event.messageId == ids::kLogFtpTransferComplete)
                completed.append(event.field3);
        EXPECT_EQ(completed.size(), int(files.size()));
        EXPECT_EQ(completed.last(), root.mid(home().size()) + u'/' + c.expected.last());
        EXPECT_EQ(progress_.snapshot().text(Text::RemotePath), completed.last());
        EXPECT_EQ(progress_.snapshot().text(Text::LocalPath),
            files.back().localFolder + u'/' + files.back().localName);
        // One sound for the whole site (BATCH, the default).
        EXPECT_EQ(recorder_.sounds(),
            (std::vector<SoundEvent> { SoundEvent::ConnectOk, SoundEvent::TransferOk }));
    }
    // A distribution keeps its local files for the other sites, whatever DeletePut says.
    for (const auto& entry : files)
        EXPECT_TRUE(QFile::exists(entry.localFolder + u'/' + entry.localName));
}

TEST_F(PutEngineTest, AFolderThatIsAPlainFileFailsItsFilesAndLaterFilesStillGo)
{
    SettingsStore::set(
        settings::config::kFtpDirTree, QString::fromLatin1(settings::config::kDirTreeLastDir));
    SettingsStore::set(settings::sounds::kTransferType, QStringLiteral("FILE"));
    makeRemoteFolder(QStringLiteral("p"));
    ASSERT_TRUE(makeFile(home() + QStringLiteral("/p/2024"), 3, 99));
    std::vector<FileEntry> files = {
        localFile(QStringLiteral("2024"), QStringLiteral("a.jpg"), 10),
        localFile(QStringLiteral("2024"), QStringLiteral("b.jpg"), 10),
        localFile(QStringLiteral("2025"), QStringLiteral("c.jpg"), 10),
    };
    static_cast<void>(newCommands());

    ASSERT_EQ(put(files, QStringLiteral("p"), {}), kEngineRan);

    EXPECT_EQ(resultsOf(files), (std::vector<int> { 240, 240, 0 }));
    EXPECT_EQ(files[0].message, StringTable::text(ids::kCannotCreateFolder));
    EXPECT_EQ(files[1].message, StringTable::text(ids::kCannotCreateFolder));
    EXPECT_TRUE(QFileInfo(home() + QStringLiteral("/p/2024")).isFile());
    EXPECT_TRUE(sameBytes(
        files[2].localFolder + QStringLiteral("/c.jpg"), home() + QStringLiteral("/p/2025/c.jpg")));
    EXPECT_EQ(logged(ids::kLogMakeDirectoryFailed), QStringList({ "/p/2024", "/p/2024" }));
    EXPECT_EQ(logged(ids::kLogMakeDirectoryOk), QStringList { "/p/2025" });
    auto commands = newCommands();
    EXPECT_EQ(commands["MKD"], 2); // the refused folder is not asked for again
    EXPECT_EQ(commands["USER"], 1); // a refusal keeps the connection
    // One sound per file, none for the site.
    EXPECT_EQ(recorder_.sounds(),
        (std::vector<SoundEvent> { SoundEvent::ConnectOk, SoundEvent::TransferFail,
            SoundEvent::TransferFail, SoundEvent::TransferOk }));
}

TEST_F(PutEngineTest, ForbiddenOverwriteRefusesExistingFilesAndSendsTheRest)
{
    makeRemoteFolder(QStringLiteral("o"));
    const auto existing = home() + QStringLiteral("/o/a.txt");
    ASSERT_TRUE(makeFile(existing, 7, 1000));
    const auto before = makeBytes(7, 1000);
    const std::vector<FileEntry> files = {
        localFile(QStringLiteral("x"), QStringLiteral("a.txt"), 20),
        localFile(QStringLiteral("x"), QStringLiteral("c.txt"), 20),
        localFile(QStringLiteral("y"), QStringLiteral("c.txt"), 30), // sent just before
        localFile(QStringLiteral("x"), QStringLiteral("d.txt"), 20),
    };
    static_cast<void>(newCommands());

    auto refused = files;
    ASSERT_EQ(put(refused, QStringLiteral("o"), {}), kEngineRan);
    EXPECT_EQ(resultsOf(refused), (std::vector<int> { 239, 0, 239, 0 }));
    EXPECT_EQ(refused[0].message, StringTable::text(ids::kCannotOverwrite));
    QFile kept(existing);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), before);
    EXPECT_TRUE(sameBytes(local(QStringLiteral("x/c.txt")), home() + QStringLiteral("/o/c.txt")));
    EXPECT_EQ(newCommands()["LIST"], 1); // one folder, listed once for four files

    auto replaced = files;
    EngineOptions options;
    options.overwriteAllowed = true;
    ASSERT_EQ(put(replaced, QStringLiteral("o"), options), kEngineRan);
    EXPECT_EQ(resultsOf(replaced), (std::vector<int> { 0, 0, 0, 0 }));
    EXPECT_TRUE(sameBytes(local(QStringLiteral("x/a.txt")), existing));
    EXPECT_TRUE(sameBytes(local(QStringLiteral("y/c.txt")), home() + QStringLiteral("/o/c.txt")));
    EXPECT_EQ(newCommands()["LIST"], 0); // nothing to look up when overwriting is allowed
}

// vsftpd lists folders in its own "ls -l" form: an existing folder is used as it is and an
// existing file is refused, both seen in that listing.
TEST_F(PutEngineTest, AVsftpdListingShowsWhatIsThere)
{
    SKIP_WITHOUT(Vsftpd);
    Vsftpd vsftpd;
    SettingsStore::set(
        settings::config::kFtpDirTree, QString::fromLatin1(settings::config::kDirTreeLastDir));
    const auto pub = vsftpd.root() + u'/' + Vsftpd::uploadFolder();
    ASSERT_TRUE(makeFile(pub + QStringLiteral("/2024/a.txt"), 4, 5));
    // Made here, so owned by us: the anonymous sessions must be able to write into it.
    ASSERT_TRUE(QFile::setPermissions(pub + QStringLiteral("/2024"),
        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner
            | QFileDevice::ReadOther | QFileDevice::WriteOther | QFileDevice::ExeOther));
    std::vector<FileEntry> files = {
        localFile(QStringLiteral("2024"), QStringLiteral("a.txt"), 20),
        localFile(QStringLiteral("2024"), QStringLiteral("b.txt"), 20),
        localFile(QStringLiteral("2025"), QStringLiteral("c.txt"), 20),
    };
    auto job = session();

    ASSERT_EQ(
        runPutEngine(*job, siteOf(vsftpd, u'/' + Vsftpd::uploadFolder()), files, {}), kEngineRan);
    EXPECT_EQ(resultsOf(files), (std::vector<int> { 239, 0, 0 }));
    EXPECT_TRUE(
        sameBytes(local(QStringLiteral("2024/b.txt")), pub + QStringLiteral("/2024/b.txt")));
    EXPECT_TRUE(
        sameBytes(local(QStringLiteral("2025/c.txt")), pub + QStringLiteral("/2025/c.txt")));
    EXPECT_EQ(logged(ids::kLogMakeDirectoryOk), QStringList { "/pub/2025" });
}

TEST_F(PutEngineTest, ARefusedLoginReturnsTheConnectCodeAndSendsNothing)
{
    FtpFaults faults;
    faults.refuseLogin = QStringList { QStringLiteral("*") };
    server_->setFaults(faults);
    std::vector<FileEntry> files = {
        localFile(QStringLiteral("x"), QStringLiteral("a.txt"), 20),
        localFile(QStringLiteral("x"), QStringLiteral("b.txt"), 20),
    };

    EXPECT_EQ(put(files, QString(), {}), inet::kLoginFailed);
    EXPECT_EQ(server_->commandCount(QStringLiteral("STOR")), 0);
    for (const auto& entry : files) {
        EXPECT_EQ(entry.result, FileEntry::kNotTried);
        // The connect's text: its message and the server's words.
        EXPECT_TRUE(entry.message.startsWith(StringTable::errorMessage(inet::kLoginFailed)))
            << entry.message.toStdString();
    }

    // The bookkeeping then says why each file was not sent.
    recorder_.clear();
    FailureLogSink sink(recorder_);
    sink.siteFinished(siteOf(*server_), files);
    const auto events = recorder_.events();
    ASSERT_EQ(events.size(), files.size());
    for (const auto& event : events)
        EXPECT_EQ(event.detail, files.front().message);
}

// Stands for the window: sets the job's cancel flag when the first file has gone.
class CancelAfterFirstFile final : public LogSink {
public:
    CancelAfterFirstFile(LogSink& next, std::atomic<bool>& cancel)
        : next_(next), cancel_(cancel) { }
    void write(const LogEvent& event) override
    {
        if (event.messageId == ids::kLogFtpTransferComplete)
            cancel_ = true;
        next_.write(event);
    }

private:
    LogSink& next_;
    std::atomic<bool>& cancel_;
};

TEST_F(PutEngineTest, TheCancelFlagStopsTheRunBeforeTheNextFile)
{
    makeRemoteFolder(QStringLiteral("c"));
    std::vector<FileEntry> files = {
        localFile(QStringLiteral("x"), QStringLiteral("a.bin"), 20),
        localFile(QStringLiteral("x"), QStringLiteral("b.bin"), 20),
        localFile(QStringLiteral("x"), QStringLiteral("c.bin"), 20),
    };
    std::atomic<bool> cancel { false };
    CancelAfterFirstFile log(recorder_, cancel);
    JobServices services { log, recorder_, recorder_, recorder_ };
    CTransferSession job(services, &progress_);
    EngineOptions options;
    options.cancelJob = &cancel;

    ASSERT_EQ(
        runPutEngine(job, siteOf(*server_, QStringLiteral("/c")), files, options), kEngineRan);
    EXPECT_EQ(resultsOf(files),
        (std::vector<int> { FileEntry::kSent, FileEntry::kNotTried, FileEntry::kNotTried }));
    EXPECT_EQ(filesUnder(home() + QStringLiteral("/c")), QStringList { "a.bin" });

    recorder_.clear();
    FailureLogSink sink(recorder_);
    sink.siteFinished(siteOf(*server_), files);
    const auto events = recorder_.events();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].field3, QStringLiteral("/c/b.bin"));
    EXPECT_EQ(events[0].detail, StringTable::text(ids::kPutCanceled));
}

TEST_F(PutEngineTest, AFailedTransferKeepsTheFolderItWasMeantFor)
{
    SettingsStore::set(
        settings::config::kFtpDirTree, QString::fromLatin1(settings::config::kDirTreeLastDir));
    makeRemoteFolder(QStringLiteral("r"));
    FtpFaults faults;
    faults.refuse = QStringList { QStringLiteral("STOR") };
    server_->setFaults(faults);
    std::vector<FileEntry> files = {
        localFile(QStringLiteral("2024"), QStringLiteral("a.jpg"), 10),
        localFile(QStringLiteral("2024"), QStringLiteral("b.jpg"), 10),
    };
    static_cast<void>(newCommands());

    ASSERT_EQ(put(files, QStringLiteral("r"), {}), kEngineRan);
    for (const auto& entry : files) {
        EXPECT_EQ(entry.result, inet::kServerError);
        EXPECT_TRUE(entry.message.contains(QLatin1StringView(FtpServer::kRefusalText)))
            << entry.message.toStdString();
        EXPECT_EQ(entry.remoteFolder, QStringLiteral("/r/2024/"));
        EXPECT_EQ(entry.transferred, 0);
    }
    EXPECT_EQ(newCommands()["MKD"], 1);

    recorder_.clear();
    FailureLogSink sink(recorder_);
    sink.siteFinished(siteOf(*server_), files);
    ASSERT_EQ(recorder_.events().size(), 2u);
    EXPECT_EQ(recorder_.events()[0].field3, QStringLiteral("/r/2024/a.jpg"));
    EXPECT_EQ(recorder_.events()[0].detail, files[0].message);
}

} // namespace
} // namespace zelto::test
