#include "FileListModel.h"

#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QStyle>

namespace zelto {

FileListModel::FileListModel(QObject* parent) : QAbstractTableModel(parent)
{
}

int FileListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(list_.entries().size());
}

int FileListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FileListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || std::size_t(index.row()) >= list_.entries().size())
        return {};
    const FileListEntry& entry = list_.entries()[std::size_t(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case Name:
            return entry.localName;
        case Folder:
            return QDir::toNativeSeparators(entry.folder);
        case RemoteName:
            return entry.remoteName.isEmpty() ? entry.localName : entry.remoteName;
        case Size:
            return isFolder(index.row()) ? QVariant() : QVariant(QLocale().toString(entry.size));
        }
        break;
    case Qt::DecorationRole:
        if (index.column() == Name) {
            return QApplication::style()->standardIcon(
                isFolder(index.row()) ? QStyle::SP_DirIcon : QStyle::SP_FileIcon);
        }
        break;
    case Qt::ToolTipRole:
        return QDir::toNativeSeparators(entry.localPath());
    case Qt::TextAlignmentRole:
        if (index.column() == Size)
            return QVariant(Qt::AlignRight | Qt::AlignVCenter);
        break;
    }
    return {};
}

QVariant FileListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case Name:
        return StringTable::text(ids::kColumnName);
    case Folder:
        return tr("Folder");
    case RemoteName:
        return StringTable::text(ids::kColumnRemoteFileName);
    case Size:
        return StringTable::text(ids::kColumnSize);
    }
    return {};
}

bool FileListModel::add(const FileListEntry& entry)
{
    // Asked first, since the rows must be announced before the list grows.
    if (list_.contains(entry.folder, entry.localName))
        return false;
    const bool before = list_.changed();
    const int row = rowCount();
    beginInsertRows({}, row, row);
    list_.add(entry);
    endInsertRows();
    reportFlag(before);
    return true;
}

template <typename Edit> auto FileListModel::resetAround(Edit&& edit)
{
    const bool before = list_.changed();
    beginResetModel();
    auto result = edit();
    folders_.clear();
    endResetModel();
    reportFlag(before);
    return result;
}

void FileListModel::open(const QString& listFile)
{
    resetAround([&] {
        list_.clear();
        list_.load(listFile);
        return true;
    });
}

void FileListModel::load(const QString& listFile)
{
    resetAround([&] {
        list_.load(listFile);
        return true;
    });
}

FileList::ServerFileLoad FileListModel::loadServerFile(
    const QString& flsFile, const QString& listFile, Notifier& notifier)
{
    return resetAround([&] { return list_.loadServerFile(flsFile, listFile, notifier); });
}

int FileListModel::remove(const std::vector<int>& rows, Notifier& notifier)
{
    return resetAround([&] { return list_.remove(rows, notifier); });
}

bool FileListModel::changeRemoteName(int row, const QString& answer, Notifier& notifier)
{
    const bool before = list_.changed();
    const bool renamed = list_.changeRemoteName(row, answer, notifier);
    if (renamed)
        Q_EMIT dataChanged(index(row, RemoteName), index(row, RemoteName));
    reportFlag(before);
    return renamed;
}

bool FileListModel::save(const QString& listFile)
{
    const bool before = list_.changed();
    const bool saved = list_.save(listFile);
    reportFlag(before);
    return saved;
}

void FileListModel::reportFlag(bool before)
{
    if (list_.changed() != before)
        Q_EMIT changedFlagChanged(list_.changed());
}

bool FileListModel::isFolder(int row) const
{
    if (folders_.size() < list_.entries().size())
        folders_.resize(list_.entries().size(), -1);
    signed char& known = folders_[std::size_t(row)];
    if (known < 0)
        known = QFileInfo(list_.entries()[std::size_t(row)].localPath()).isDir() ? 1 : 0;
    return known == 1;
}

} // namespace zelto
