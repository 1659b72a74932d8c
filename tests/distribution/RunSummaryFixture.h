#pragma once

// What the tests of a run's records and of its report share: two sites that take the files and
// one that refuses the login, each with a profile, links of them, and the rows a run should keep.

#include "DataFiles.h"
#include "DistributionFixture.h"
#include "distribution/RunSummary.h"
#include "settings/DataFolders.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

namespace zelto::test {

class RunSummaryFixture : public DistributionFixture {
protected:
    // Site label, sent, failed, bytes.
    using Row = std::tuple<std::string, int, int, qint64>;

    void SetUp() override
    {
        DistributionFixture::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        // The third server turns every login down.
        servers_[2]->setFaults({ .refuseLogin = { "*" } });
    }

    // The site a job sends to by the profile "site<server>".
    [[nodiscard]] JobSite namedSite(int server) const
    {
        JobSite named = site(server);
        named.name = QStringLiteral("site%1").arg(server);
        return named;
    }
    // The profile's name, then where it points.
    [[nodiscard]] QString label(int server) const
    {
        return QStringLiteral("site%1 (%2:%3)")
            .arg(server)
            .arg(FtpServer::host())
            .arg(servers_[server]->port());
    }

    // What the whole file set is at a site that took it, and at one that refused the login.
    [[nodiscard]] Row rowSent(int server) const
    {
        qint64 bytes = 0;
        for (const FileEntry& file : fileSet())
            bytes += file.size;
        return { label(server).toStdString(), int(fileSet().size()), 0, bytes };
    }
    [[nodiscard]] Row rowRefused(int server) const
    {
        return { label(server).toStdString(), 0, int(fileSet().size()), 0 };
    }
    // Parallel sites end in any order.
    [[nodiscard]] static std::vector<Row> sorted(std::vector<Row> rows)
    {
        std::sort(rows.begin(), rows.end());
        return rows;
    }
    [[nodiscard]] static std::vector<Row> rowsOf(const RunSummary& summary)
    {
        std::vector<Row> rows;
        for (const RunSummary::Site& site : summary.sites())
            rows.emplace_back(
                site.label.toStdString(), site.tally.sent, site.tally.failed, site.tally.bytes);
        return sorted(std::move(rows));
    }
};

} // namespace zelto::test
