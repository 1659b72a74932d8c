#include "FtpServer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <algorithm>

namespace zelto::test {

namespace {

using namespace std::chrono_literals;

const QString kPython = QStringLiteral("/usr/bin/python3");
constexpr auto kStartDeadline = 10s;

QJsonObject toJson(const FtpFaults& faults)
{
    QJsonObject stall;
    for (const auto& [command, delay] : faults.stall)
        stall[command]
            = delay == FtpFaults::kForever ? QJsonValue() : QJsonValue(delay.count() / 1000.0);
    QJsonObject trickle;
    for (const auto& [command, pace] : faults.trickle)
        trickle[command] = pace.count() / 1000.0;
    QJsonObject json {
        { "trickle", trickle },
        { "refuse_login", QJsonArray::fromStringList(faults.refuseLogin) },
        { "close_data_on", QJsonArray::fromStringList(faults.closeDataOn) },
        { "stall", stall },
        { "refuse", QJsonArray::fromStringList(faults.refuse) },
        { "endless_listing", faults.endlessListing },
        { "hostile_names", QJsonArray::fromStringList(faults.hostileNames) },
        { "drop", QJsonArray::fromStringList(faults.drop) },
        { "hang_up_after_upload", faults.hangUpAfterUpload },
        { "spare_files", faults.spareFiles },
    };
    if (faults.closeDataAfter)
        json["close_data_after"] = double(*faults.closeDataAfter);
    return json;
}

void writeJson(const QString& path, const QJsonObject& json)
{
    // Written aside and renamed, so that the server never reads half a file.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(json).toJson()) < 0
        || !file.commit())
        fixtureError(QStringLiteral("cannot write %1: %2").arg(path, file.errorString()));
}

} // namespace

std::optional<QString> FtpServer::unavailableReason()
{
    static const std::optional<QString> reason = []() -> std::optional<QString> {
        if (!QFileInfo(kPython).isExecutable())
            return QStringLiteral("the FTP test server needs %1, which is not installed")
                .arg(kPython);
        const QTemporaryDir dir;
        ServerProcess probe(kPython, { QStringLiteral("-c"), QStringLiteral("import pyftpdlib") },
            dir.filePath(QStringLiteral("probe.err")));
        if (probe.waitForExit(kStartDeadline) != 0) // the last line: the exception that ended it
            return QStringLiteral("the FTP test server needs pyftpdlib for %1 (package "
                                  "python3-pyftpdlib): %2")
                .arg(kPython, probe.errorOutput().section(QLatin1Char('\n'), -1));
        return std::nullopt;
    }();
    return reason;
}

FtpServer::FtpServer()
    : users_ { { QStringLiteral("zelto"), QStringLiteral("secret"), dir_.filePath("home") } }
{
    const FtpUser& user = users_.front();
    if (!dir_.isValid() || !QDir().mkpath(user.home))
        fixtureError(QStringLiteral("cannot make a temporary folder: %1").arg(dir_.errorString()));
    setFaults({});
    writeJson(file("config.json"),
        { { "user",
              QJsonObject {
                  { "name", user.name }, { "password", user.password }, { "home", user.home } } },
            { "faults_file", file("faults.json") } });

    process_ = std::make_unique<ServerProcess>(kPython,
        QStringList { QStringLiteral(ZELTO_SUPPORT_DIR "/ftp_server.py"),
            QStringLiteral("--config"), file("config.json"), QStringLiteral("--command-log"),
            file("commands.log") },
        file("server.err"));
    const auto line = process_->readLine(kStartDeadline);
    bool ok = false;
    if (line && line->startsWith("PORT "))
        port_ = line->mid(5).toUShort(&ok);
    if (ok)
        return;
    const auto what = process_->isRunning()
        ? QStringLiteral("did not report its port within %1 s").arg(kStartDeadline.count())
        : QStringLiteral("ended before it reported its port");
    fixtureError(
        QStringLiteral("the FTP test server %1 (its output: \"%2\"); its error output:\n%3")
            .arg(what, QString::fromLocal8Bit(line.value_or(QByteArray())),
                process_->errorOutput()));
}

FtpServer::~FtpServer() = default;

QByteArray FtpServer::url(const QString& path) const
{
    const FtpUser& user = users_.front();
    return QStringLiteral("ftp://%1:%2@%3:%4/%5")
        .arg(user.name, user.password, host())
        .arg(port_)
        .arg(path)
        .toUtf8();
}

void FtpServer::setFaults(const FtpFaults& faults)
{
    writeJson(file("faults.json"), toJson(faults));
}

std::vector<LoggedCommand> FtpServer::commandLog() const
{
    std::vector<LoggedCommand> log;
    QFile file(this->file("commands.log"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return log;
    while (!file.atEnd()) {
        const auto line = QString::fromUtf8(file.readLine()).chopped(1);
        log.push_back(
            { line.section(u' ', 0, 0).toInt(), line.section(u' ', 1, 1), line.section(u' ', 2) });
    }
    return log;
}

int FtpServer::commandCount(const QString& command) const
{
    const auto log = commandLog();
    return int(std::count_if(
        log.begin(), log.end(), [&](const LoggedCommand& c) { return c.command == command; }));
}

QString FtpServer::typeAt(const QString& command, const QString& name) const
{
    QHash<int, QString> types; // by connection
    for (const LoggedCommand& logged : commandLog()) {
        if (logged.command == QLatin1String("TYPE"))
            types[logged.connection] = logged.argument;
        else if (logged.command == command && logged.argument.endsWith(u'/' + name))
            return types.value(logged.connection);
    }
    return QStringLiteral("no %1 of %2").arg(command, name);
}

QString FtpServer::file(const char* name) const
{
    return dir_.filePath(QString::fromLatin1(name));
}

} // namespace zelto::test
