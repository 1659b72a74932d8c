#include "RunSummary.h"

#include <algorithm>

namespace zelto {

QString RunSummary::labelOf(const JobSite& site)
{
    const QString address = LinkReport::siteLabel(site);
    return site.name.isEmpty() ? address : QStringLiteral("%1 (%2)").arg(site.name, address);
}

QString RunSummary::statusLine() const
{
    const LinkReport::Tally sum = total();
    return QStringLiteral("Sent %1 files to %2 sites, %3 failed")
        .arg(sum.sent)
        .arg(sites_.size())
        .arg(sum.failed);
}

QString RunSummary::closingLine() const
{
    const auto failing = std::count_if(
        sites_.begin(), sites_.end(), [](const Site& site) { return site.tally.failed > 0; });
    if (failing == 0)
        return QStringLiteral("Every file reached every site.");
    return QStringLiteral("%1 files not sent, at %2 of %3 sites.")
        .arg(total().failed)
        .arg(failing)
        .arg(sites_.size());
}

QString RunSummary::timeText(double seconds)
{
    return QStringLiteral("%1 s").arg(seconds, 0, 'f', 2);
}

QString RunSummary::tabSeparated() const
{
    QString text = QStringLiteral("Site\tSent\tFailed\tBytes\tTime\n");
    for (const Site& site : sites_) {
        text += QStringLiteral("%1\t%2\t%3\t%4\t%5\n")
                    .arg(site.label)
                    .arg(site.tally.sent)
                    .arg(site.tally.failed)
                    .arg(site.tally.bytes)
                    .arg(timeText(site.seconds));
    }
    return text;
}

LinkReport::Tally RunSummary::total() const
{
    LinkReport::Tally sum;
    for (const Site& site : sites_) {
        sum.sent += site.tally.sent;
        sum.failed += site.tally.failed;
        sum.bytes += site.tally.bytes;
    }
    return sum;
}

} // namespace zelto
