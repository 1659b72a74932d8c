#include "SiteListModel.h"

#include "distribution/ProfileSite.h"
#include "profiles/StoredFormats.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace zelto {
namespace {

SiteRecord siteOf(const QString& profile)
{
    return SiteProfile::readSite(profile, profilefile::kTargetListBuffer);
}

} // namespace

SiteListModel::SiteListModel(QObject* parent) : QAbstractTableModel(parent)
{
}

int SiteListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(rows_.size());
}

int SiteListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant SiteListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || std::size_t(index.row()) >= rows_.size())
        return {};
    const Row& row = rows_[std::size_t(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case Server:
            return row.site.host;
        case Login:
            return row.site.user;
        case Password:
            return QLatin1String(kHiddenPassword);
        case RemoteFolder:
            return row.site.remotePath;
        case Port:
            return row.site.port;
        }
        break;
    case Qt::ToolTipRole:
        return SiteProfile::nameOf(row.profile);
    case Qt::TextAlignmentRole:
        if (index.column() == Port)
            return QVariant(Qt::AlignRight | Qt::AlignVCenter);
        break;
    }
    return {};
}

QVariant SiteListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case Server:
        return tr("Server");
    case Login:
        return tr("Login");
    case Password:
        return tr("Password");
    case RemoteFolder:
        return tr("Remote Folder");
    case Port:
        return tr("Port");
    }
    return {};
}

void SiteListModel::addProfiles(const QStringList& files)
{
    for (const QString& file : files) {
        const QString profile = QFileInfo(file).absoluteFilePath();
        const SiteRecord site = siteOf(profile);
        if (const int row = rowOf(profile); row >= 0) {
            rows_[std::size_t(row)].site = site;
            Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
            continue;
        }
        const int row = rowCount();
        beginInsertRows({}, row, row);
        rows_.push_back({ profile, site });
        endInsertRows();
    }
}

void SiteListModel::refresh()
{
    std::vector<int> gone;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        if (QFileInfo::exists(rows_[row].profile))
            rows_[row].site = siteOf(rows_[row].profile);
        else
            gone.push_back(int(row));
    }
    if (!rows_.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    removeSites(std::move(gone));
}

void SiteListModel::removeSites(std::vector<int> rows)
{
    std::sort(rows.begin(), rows.end(), std::greater<>());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    for (const int row : rows) {
        if (row < 0 || std::size_t(row) >= rows_.size())
            continue;
        beginRemoveRows({}, row, row);
        rows_.erase(rows_.begin() + row);
        endRemoveRows();
    }
}

std::vector<JobSite> SiteListModel::sites() const
{
    std::vector<JobSite> sites;
    sites.reserve(rows_.size());
    for (const Row& row : rows_)
        sites.push_back(jobSiteOf(row.site, SiteProfile::nameOf(row.profile)));
    return sites;
}

int SiteListModel::rowOf(const QString& profile) const
{
    const auto found = std::find_if(
        rows_.begin(), rows_.end(), [&](const Row& row) { return row.profile == profile; });
    return found == rows_.end() ? -1 : int(found - rows_.begin());
}

} // namespace zelto
