#include "LinkReport.h"

#include "ftp/FtpResult.h"
#include "platform/Paths.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

namespace zelto {

LinkReport::LinkReport(QString linkName, std::FILE* out) : linkName_(std::move(linkName)), out_(out)
{
}

QString LinkReport::siteLabel(const JobSite& site)
{
    return site.server + u':' + QString::number(site.port);
}

QString LinkReport::failureText(const FileEntry& file)
{
    if (!file.message.isEmpty())
        return file.message;
    // Never tried: the job was cancelled before it came to this file.
    if (file.result == FileEntry::kNotTried)
        return StringTable::text(ids::kPutCanceled);
    return FtpResult::failure(file.result).text();
}

void LinkReport::runStarted(std::size_t sites, std::size_t files, qint64 bytes)
{
    print(QStringLiteral("Link %1: %2 sites, %3 files, %4 bytes\n")
              .arg(linkName_)
              .arg(sites)
              .arg(files)
              .arg(bytes));
}

void LinkReport::noSites()
{
    print(QStringLiteral("Link %1 has no sites: nothing to send.\n").arg(linkName_));
}

LinkReport::Tally LinkReport::tallyOf(const std::vector<FileEntry>& files)
{
    Tally tally;
    for (const FileEntry& file : files) {
        if (file.result == FileEntry::kSent) {
            ++tally.sent;
            tally.bytes += file.size;
        } else {
            ++tally.failed;
        }
    }
    return tally;
}

LinkReport::Tally LinkReport::siteFiles(const JobSite& site, const std::vector<FileEntry>& files)
{
    if (out_) {
        const QString label = siteLabel(site);
        QString lines;
        for (const FileEntry& file : files) {
            const QString path = joinPath(file.localFolder, file.localName);
            lines += file.result == FileEntry::kSent
                ? QStringLiteral("%1  sent    %2\n").arg(label, path)
                : QStringLiteral("%1  failed  %2  %3\n").arg(label, path, failureText(file));
        }
        print(lines);
    }
    return tallyOf(files);
}

void LinkReport::siteEnded(
    const JobSite& site, const std::optional<FtpResult>& result, const Tally& tally, double seconds)
{
    const bool reached = result && result->ok();
    QString state = QStringLiteral("done");
    if (!reached) {
        // Named by the connect's code alone: each file's line above carries its whole text.
        state = result
            ? QStringLiteral("not reached (%1)").arg(FtpResult::failure(result->code).text())
            : QStringLiteral("cancelled");
    }
    print(QStringLiteral("%1  %2: %3 sent, %4 failed, %5 bytes, %6 s\n")
              .arg(siteLabel(site), state)
              .arg(tally.sent)
              .arg(tally.failed)
              .arg(tally.bytes)
              .arg(seconds, 0, 'f', 2));
    const std::lock_guard lock(mutex_);
    ++sitesEnded_;
    filesFailed_ += tally.failed;
    if (!reached || tally.failed > 0)
        ++sitesWithFailures_;
}

void LinkReport::runEnded()
{
    int failedSites = 0;
    int failedFiles = 0;
    int sites = 0;
    {
        const std::lock_guard lock(mutex_);
        failedSites = sitesWithFailures_;
        failedFiles = filesFailed_;
        sites = sitesEnded_;
    }
    if (failedSites == 0) {
        print(QStringLiteral("Link %1: every file reached every site.\n").arg(linkName_));
        return;
    }
    print(QStringLiteral("Link %1: %2 files not sent, at %3 of %4 sites.\n")
              .arg(linkName_)
              .arg(failedFiles)
              .arg(failedSites)
              .arg(sites));
}

bool LinkReport::allSent() const
{
    const std::lock_guard lock(mutex_);
    return sitesWithFailures_ == 0;
}

void LinkReport::print(const QString& lines)
{
    if (lines.isEmpty() || !out_)
        return;
    const QByteArray bytes = lines.toLocal8Bit();
    const std::lock_guard lock(mutex_);
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), out_);
    std::fflush(out_);
}

} // namespace zelto
