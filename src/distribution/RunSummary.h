#pragma once

#include "distribution/LinkReport.h"
#include "ftp/JobSite.h"

#include <QString>

#include <vector>

namespace zelto {

// The figures of one run of transfers to several sites, a record per site in the order the sites
// ended: the same figures an unattended link run prints, kept for a window to show at the run's
// end. A plain value; whoever fills it from several threads guards it.
class RunSummary final {
public:
    struct Site {
        QString label; // labelOf
        LinkReport::Tally tally;
        double seconds = 0;
    };

    explicit RunSummary(QString title = {}) : title_(std::move(title)) { }

    // The site's profile name, when it has one, before its "host:port": the console's label alone
    // reads alike for every site of one host.
    [[nodiscard]] static QString labelOf(const JobSite& site);

    void add(Site site) { sites_.push_back(std::move(site)); }

    // Names the run: "Link run: nightly", "Send Parallel".
    [[nodiscard]] const QString& title() const { return title_; }
    [[nodiscard]] const std::vector<Site>& sites() const { return sites_; }

    // "Sent 8 files to 3 sites, 4 failed", for a status bar.
    [[nodiscard]] QString statusLine() const;
    // What the run came to, under its table.
    [[nodiscard]] QString closingLine() const;
    // A site's time as the console prints it: seconds with two decimals.
    [[nodiscard]] static QString timeText(double seconds);
    // The records as tab-separated lines (site, sent, failed, bytes, seconds), a heading first.
    [[nodiscard]] QString tabSeparated() const;

private:
    [[nodiscard]] LinkReport::Tally total() const;

    QString title_;
    std::vector<Site> sites_;
};

} // namespace zelto
