#include "ScriptInterpreter.h"

#include "ftp/CTransferSession.h"
#include "ftp/FtpConnection.h"
#include "ftp/FtpErrors.h"
#include "ftp/JobServices.h"
#include "log/LogSink.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "scripts/RemoteFolder.h"
#include "scripts/ScriptLine.h"
#include "scripts/ScriptReport.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>

namespace zelto {
namespace {

// "The requested item could not be located.": the message of a name the table does not hold.
constexpr int kItemNotFound = 12027;

// The port word is read as atoi reads it; 0, a non-number or no port at all takes FTP\Port.
quint16 portOf(const QString& word)
{
    const QByteArray digits = word.toLatin1();
    const long value = std::strtol(digits.constData(), nullptr, 10);
    if (value > 0 && value <= 0xffff)
        return quint16(value);
    return quint16(SettingsStore::get(settings::ftp::kPort));
}

// A refusal by the server is told in the script's own words, the server's reply after them;
// any other failure (a dropped connection, a time-out) in its own.
QString reasonFor(const FtpResult& result, int refusalTextId)
{
    if (result.code != inet::kServerError)
        return result.text();
    return FtpResult::failure(refusalTextId, result.detail).text();
}

} // namespace

ScriptInterpreter::ScriptInterpreter(
    JobServices& services, ScriptReport& report, std::stop_token stop, PauseGate* gate)
    : services_(services)
    , report_(report)
    , stop_(stop)
    , gate_(gate)
    , table_(SettingsStore::get(settings::config::kDataDirForScripts))
    , sounds_(services.sounds)
    , transfers_(report, sounds_, std::move(stop))
    , localMachine_(StringTable::text(ids::kLocalMachine))
{
}

void ScriptInterpreter::runLine(const QString& text, bool cut)
{
    const ScriptLine line = ScriptLine::parse(text, cut);
    switch (line.kind) {
    case ScriptLine::Kind::Skipped:
        return;
    case ScriptLine::Kind::Malformed:
        report_.malformed(line.shown);
        return;
    case ScriptLine::Kind::Unparsable:
        report_.unparsable(line.shown);
        return;
    case ScriptLine::Kind::Command:
        break;
    }
    switch (line.verb) {
    case ScriptVerb::Open:
        return open(line);
    case ScriptVerb::Close:
        return close(line);
    case ScriptVerb::Cd:
        return changeFolder(line);
    case ScriptVerb::Lcd:
        return changeLocalFolder(line);
    case ScriptVerb::Mkdir:
        return makeFolder(line);
    case ScriptVerb::Remove:
        return remove(line, false);
    case ScriptVerb::Rmdir:
        return remove(line, true);
    case ScriptVerb::Rename:
        return rename(line);
    case ScriptVerb::Binary:
    case ScriptVerb::Ascii:
        return setType(line);
    case ScriptVerb::Get:
    case ScriptVerb::Put:
    case ScriptVerb::Send:
        return transfer(line);
    }
}

void ScriptInterpreter::finish()
{
    for (ScriptConnection& connection : table_.all()) {
        if (!connection.ready().ok())
            continue;
        connection.session->closeConnection();
        report_.succeeded(ScriptReport::subject(connection.name), ids::kLogFtpConnectionClosed, {},
            ScriptReport::fields(connection.host));
    }
    if (transfers_.anyTried())
        sounds_.runEnded();
}

void ScriptInterpreter::open(const ScriptLine& line)
{
    const QString name = line.word(1);
    if (table_.find(name))
        return; // a second "open" of a name is ignored
    ScriptConnection connection;
    connection.name = name;
    connection.host = line.word(2);
    connection.user = line.word(3);
    connection.password = line.word(4);
    connection.port = portOf(line.word(5));
    connection.extra = line.word(6);
    connection.session = std::make_unique<CTransferSession>(services_, nullptr, stop_);
    connection.session->setPauseGate(gate_);
    ScriptConnection& added = table_.add(std::move(connection));

    const QString subject = ScriptReport::subject(name);
    using Log = ScriptReport::Log;
    const auto connected = added.session->connectJob(
        { added.host, added.user, added.password, added.port, {}, 0, {} });
    // The connect logs its own steps, except a refused login.
    if (!added.session->connection()) {
        report_.failed(subject, ids::kLogInternetConnectionFailed, {}, connected.text(), {},
            Log::AlreadyWritten);
        return;
    }
    report_.succeeded(subject, ids::kLogInternetConnectionOk, {}, {}, Log::AlreadyWritten);
    if (connected.ok())
        report_.succeeded(subject, ids::kLogFtpConnectionOk, {}, {}, Log::AlreadyWritten);
    else
        report_.failed(subject, ids::kLogFtpConnectionFailed, {}, connected.text(),
            ScriptReport::fields(added.host));
}

void ScriptInterpreter::close(const ScriptLine& line)
{
    const QString name = line.word(1);
    ScriptConnection* connection = table_.find(name);
    const QString subject = ScriptReport::subject(name);
    if (connection && connection->ready().ok()) {
        connection->session->closeConnection();
        report_.succeeded(
            subject, ids::kLogFtpConnectionClosed, {}, ScriptReport::fields(connection->host));
        return;
    }
    report_.failed(subject, ids::kLogSessionEnded, {},
        connection ? QString() : StringTable::errorMessage(kItemNotFound),
        ScriptReport::fields(connection ? connection->host : name));
}

void ScriptInterpreter::changeFolder(const ScriptLine& line)
{
    const QString folder = line.word(2);
    ScriptConnection* connection = opened(line.word(1), ids::kLogChangeDirectoryFailed, folder);
    if (!connection)
        return;
    const QString subject = ScriptReport::subject(connection->name);
    FtpConnection& ftp = *connection->session->connection();
    // "." stays where it is; anything else, ".." included, is the server's to resolve.
    if (folder != u".") {
        if (const auto changed = ftp.changeFolder(folder); !changed.ok()) {
            report_.failed(subject, ids::kLogChangeDirectoryFailed, folder, changed.text(),
                ScriptReport::fields(connection->host, folder));
            return;
        }
    }
    report_.succeeded(subject, ids::kLogChangeDirectoryOk, ftp.currentFolder(),
        ScriptReport::fields(connection->host, ftp.currentFolder()));
}

void ScriptInterpreter::changeLocalFolder(const ScriptLine& line)
{
    const QString folder = line.word(1);
    const QString subject = ScriptReport::subject(QLatin1StringView(ScriptConnections::kLocalName));
    const QString target = QDir::cleanPath(QDir(table_.localFolder()).absoluteFilePath(folder));
    const QFileInfo info(target);
    if (!info.isDir()) {
        const int error = info.exists() ? ENOTDIR : ENOENT;
        const auto failure = FtpResult::localFailure(
            FtpResult::localErrorFor(error), target, qt_error_string(error));
        report_.failed(subject, ids::kLogChangeDirectoryFailed, folder, failure.text(),
            ScriptReport::fields(localMachine_, folder));
        return;
    }
    table_.setLocalFolder(target);
    report_.succeeded(
        subject, ids::kLogChangeDirectoryOk, target, ScriptReport::fields(localMachine_, target));
}

void ScriptInterpreter::makeFolder(const ScriptLine& line)
{
    const QString folder = line.word(2);
    ScriptConnection* connection = opened(line.word(1), ids::kLogMakeDirectoryFailed, folder);
    if (!connection)
        return;
    const QString subject = ScriptReport::subject(connection->name);
    FtpConnection& ftp = *connection->session->connection();
    const auto made = ftp.makeFolder(folder);
    if (made.ok()) {
        report_.succeeded(subject, ids::kLogMakeDirectoryOk, folder,
            ScriptReport::fields(connection->host, folder));
        return;
    }
    const bool exists
        = made.code == inet::kServerError && RemoteFolder::holds(ftp, folder).value_or(false);
    report_.failed(subject, ids::kLogMakeDirectoryFailed, folder,
        reasonFor(made, exists ? ids::kDirectoryExists : ids::kNoPathToCreateDirectory),
        ScriptReport::fields(connection->host, folder));
}

void ScriptInterpreter::remove(const ScriptLine& line, bool folder)
{
    const QString path = line.word(2);
    ScriptConnection* connection = opened(line.word(1), ids::kLogDeletionFailed, path);
    if (!connection)
        return;
    FtpConnection& ftp = *connection->session->connection();
    const auto removed = folder ? ftp.removeFolder(path) : ftp.removeFile(path);
    const QString subject = ScriptReport::subject(connection->name);
    if (removed.ok()) {
        report_.succeeded(
            subject, ids::kLogDeletionOk, path, ScriptReport::fields(connection->host, path));
        return;
    }
    report_.failed(subject, ids::kLogDeletionFailed, path,
        reasonFor(removed, folder ? ids::kNoPathToRemoveDirectory : ids::kNoSuchFile),
        ScriptReport::fields(connection->host, path));
}

void ScriptInterpreter::rename(const ScriptLine& line)
{
    const QString from = line.word(2);
    const QString to = line.word(3);
    const QString object = from + QStringLiteral(" -> ") + to;
    ScriptConnection* connection = opened(line.word(1), ids::kLogRenamingFailed, object);
    if (!connection)
        return;
    const QString subject = ScriptReport::subject(connection->name);
    const LogEvent record = ScriptReport::fields(connection->host, from, to);
    FtpConnection& ftp = *connection->session->connection();
    // Refused before the server is asked; a folder that cannot be listed leaves it to the server.
    int refusal = 0;
    if (from.contains(u'*') || to.contains(u'*'))
        refusal = ids::kOnlyOneFileAtATime;
    else if (!RemoteFolder::holds(ftp, from).value_or(true))
        refusal = ids::kRenameSourceMissing;
    else if (RemoteFolder::holds(ftp, to).value_or(false))
        refusal = ids::kRenameTargetExists;
    if (refusal) {
        report_.failed(
            subject, ids::kLogRenamingFailed, object, StringTable::text(refusal), record);
        return;
    }
    if (const auto renamed = ftp.rename(from, to); !renamed.ok()) {
        report_.failed(subject, ids::kLogRenamingFailed, object, renamed.text(), record);
        return;
    }
    report_.succeeded(subject, ids::kLogRenamingOk, object, record);
}

void ScriptInterpreter::setType(const ScriptLine& line)
{
    ScriptConnection* connection = opened(line.word(1), 0, {});
    if (!connection)
        return;
    // For the later files of this connection only, whatever their extension.
    const bool binary = line.verb == ScriptVerb::Binary;
    connection->session->setTransferType(binary ? TransferType::Binary : TransferType::Text);
    report_.succeeded(ScriptReport::subject(connection->name),
        binary ? ids::kBinaryMode : ids::kAsciiMode, {}, ScriptReport::fields(connection->host));
}

void ScriptInterpreter::transfer(const ScriptLine& line)
{
    const int failed = ids::kLogFtpTransferFailed;
    const QString& folder = table_.localFolder();
    if (line.verb == ScriptVerb::Send) {
        ScriptConnection* from = named(line.word(1), failed, line.word(3));
        ScriptConnection* to = from ? named(line.word(2), failed, line.word(3)) : nullptr;
        if (to)
            transfers_.send(*from, *to, line.word(3), folder);
        return;
    }
    ScriptConnection* connection = named(line.word(1), failed, line.word(2));
    if (connection && line.verb == ScriptVerb::Get)
        transfers_.get(*connection, line.word(2), folder);
    else if (connection)
        transfers_.put(*connection, line.word(2), folder);
}

ScriptConnection* ScriptInterpreter::named(const QString& name, int failId, const QString& object)
{
    if (ScriptConnection* connection = table_.find(name))
        return connection;
    report_.failed(ScriptReport::subject(name), failId, object,
        StringTable::errorMessage(kItemNotFound), ScriptReport::fields(name, object));
    return nullptr;
}

ScriptConnection* ScriptInterpreter::opened(const QString& name, int failId, const QString& object)
{
    ScriptConnection* connection = named(name, failId, object);
    if (!connection)
        return nullptr;
    if (const auto ready = connection->ready(); !ready.ok()) {
        report_.failed(ScriptReport::subject(name), failId, object, ready.text(),
            ScriptReport::fields(connection->host, object));
        return nullptr;
    }
    return connection;
}

} // namespace zelto
