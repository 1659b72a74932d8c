#pragma once

#include "distribution/FileEntry.h"
#include "ftp/FtpResult.h"
#include "ftp/JobSite.h"

#include <QString>

#include <cstddef>
#include <cstdio>
#include <mutex>
#include <optional>
#include <vector>

namespace zelto {

// What an unattended link run tells its operator: a line per file of each site as the site ends
// (sent, or failed and why), a closing line per site, and one for the whole run. Lines of sites
// that end at the same moment never mix. Passwords are never shown.
class LinkReport final {
public:
    // What one site achieved.
    struct Tally {
        int sent = 0;
        int failed = 0;
        qint64 bytes = 0; // of the files sent
    };

    // `out` may be null: the run then keeps its tally and prints nothing (a link that the
    // scheduler starts in an interactive run).
    LinkReport(QString linkName, std::FILE* out);

    // "host:port": three sites of one host differ by their ports.
    [[nodiscard]] static QString siteLabel(const JobSite& site);
    // Why a file did not reach its site.
    [[nodiscard]] static QString failureText(const FileEntry& file);
    // The files of a site that has ended, counted.
    [[nodiscard]] static Tally tallyOf(const std::vector<FileEntry>& files);

    void runStarted(std::size_t sites, std::size_t files, qint64 bytes);
    void noSites();
    // Any thread: prints the files of a site that has ended and counts them.
    [[nodiscard]] Tally siteFiles(const JobSite& site, const std::vector<FileEntry>& files);
    // `result` is the site's TransferJob::SiteResult::result: success when its engine ran, none
    // when it never ran.
    void siteEnded(const JobSite& site, const std::optional<FtpResult>& result, const Tally& tally,
        double seconds);
    void runEnded();

    // Every file reached every site, and every site was reached.
    [[nodiscard]] bool allSent() const;

private:
    void print(const QString& lines);

    QString linkName_;
    std::FILE* out_;
    mutable std::mutex mutex_;
    int sitesWithFailures_ = 0;
    int sitesEnded_ = 0;
    int filesFailed_ = 0;
};

} // namespace zelto
