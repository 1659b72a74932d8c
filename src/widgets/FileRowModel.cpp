#include "FileRowModel.h"

#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QApplication>
#include <QFileInfo>
#include <QLocale>
#include <QMimeDatabase>
#include <QStyle>

namespace zelto {
namespace {

// No file name holds a separator, so this key never meets one made from a name.
constexpr QLatin1StringView kFolderKey("/");

// The Modified column's date format; set from the settings on the UI thread only.
QString dateFormat = QStringLiteral("MM/dd/yyyy");

QString extensionOf(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.mid(dot + 1) : QString();
}

} // namespace

FileRowModel::FileRowModel(QObject* parent) : QAbstractTableModel(parent)
{
}

int FileRowModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(rows_.size());
}

int FileRowModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

void FileRowModel::setDateOrder(const QString& timeType)
{
    const std::pair<const char*, const char*> orders[]
        = { { "DD/MM", "dd/MM/yyyy" }, { "MON/DD", "MMM/dd/yyyy" }, { "DD/MON", "dd/MMM/yyyy" } };
    dateFormat = QStringLiteral("MM/dd/yyyy");
    for (const auto& [word, format] : orders) {
        if (timeType == QLatin1StringView(word))
            dateFormat = QLatin1StringView(format);
    }
}

QString FileRowModel::dateText(const QDateTime& modified)
{
    if (!modified.isValid())
        return {};
    // Month names in English, as the words of the setting are.
    const QLocale c = QLocale::c();
    return c.toString(modified.toLocalTime().date(), dateFormat) + u' '
        + QLocale().toString(modified.toLocalTime().time(), QLocale::ShortFormat);
}

const QString& FileRowModel::typeText(int row) const
{
    return kinds_[std::size_t(rowKinds_[std::size_t(row)])].text;
}

QVariant FileRowModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || std::size_t(index.row()) >= rows_.size())
        return {};
    const FileRow& entry = row(index.row());
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case File:
            return entry.name;
        case Size:
            return entry.folder ? QString() : QLocale().toString(entry.size);
        case FileType:
            return typeText(index.row());
        case Modified:
            return dateText(entry.modified);
        }
        break;
    case Qt::DecorationRole:
        if (index.column() == File)
            return kinds_[std::size_t(rowKinds_[std::size_t(index.row())])].icon;
        break;
    case Qt::TextAlignmentRole:
        if (index.column() == Size)
            return QVariant(Qt::AlignRight | Qt::AlignVCenter);
        break;
    }
    return {};
}

QVariant FileRowModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case File:
        return fileTitle();
    case Size:
        return StringTable::text(ids::kColumnSize);
    case FileType:
        return StringTable::text(ids::kColumnFileType);
    case Modified:
        return StringTable::text(ids::kColumnModified);
    }
    return {};
}

Qt::ItemFlags FileRowModel::flags(const QModelIndex& index) const
{
    const auto base = QAbstractTableModel::flags(index);
    return index.isValid() ? base | Qt::ItemIsDragEnabled : base;
}

void FileRowModel::setRows(std::vector<FileRow> rows)
{
    beginResetModel();
    rows_ = std::move(rows);
    rowKinds_.clear();
    rowKinds_.reserve(rows_.size());
    for (const FileRow& entry : rows_)
        rowKinds_.push_back(kindOf(entry));
    endResetModel();
}

void FileRowModel::addRow(const FileRow& row)
{
    const int at = rowCount();
    beginInsertRows({}, at, at);
    rows_.push_back(row);
    rowKinds_.push_back(kindOf(row));
    endInsertRows();
}

int FileRowModel::find(const QString& name) const
{
    for (std::size_t at = 0; at < rows_.size(); ++at) {
        if (rows_[at].name == name)
            return int(at);
    }
    return -1;
}

void FileRowModel::removeRowAt(int row)
{
    beginRemoveRows({}, row, row);
    rows_.erase(rows_.begin() + row);
    rowKinds_.erase(rowKinds_.begin() + row);
    endRemoveRows();
}

void FileRowModel::replaceRowAt(int row, const FileRow& replacement)
{
    rows_[std::size_t(row)] = replacement;
    rowKinds_[std::size_t(row)] = kindOf(replacement);
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

void FileRowModel::setFileTitle(const QString& title)
{
    fileTitle_ = title;
    Q_EMIT headerDataChanged(Qt::Horizontal, File, File);
}

QString FileRowModel::fileTitle() const
{
    return fileTitle_.isEmpty() ? StringTable::text(ids::kColumnFile) : fileTitle_;
}

int FileRowModel::kindOf(const FileRow& row)
{
    const QString extension = extensionOf(row.name);
    const QString key = row.folder ? QString(kFolderKey)
                                   : (extension.isEmpty() ? row.name : u'.' + extension).toLower();
    if (const auto known = kindByKey_.constFind(key); known != kindByKey_.cend())
        return *known;

    FileKind kind;
    QStyle* style = QApplication::style();
    if (row.folder) {
        kind.text = tr("Folder");
        kind.icon = style->standardIcon(QStyle::SP_DirIcon);
    } else {
        // Only the name counts: a remote name is no local path, and a local file need not be read.
        const QMimeType mime
            = QMimeDatabase().mimeTypeForFile(row.name, QMimeDatabase::MatchExtension);
        if (mime.isDefault()) {
            // What the desktop calls a file it knows no type for.
            kind.text = extension.isEmpty() ? tr("File") : tr("%1 File").arg(extension.toUpper());
        } else {
            kind.text = mime.comment();
        }
        const QIcon fallback = style->standardIcon(QStyle::SP_FileIcon);
        kind.icon
            = QIcon::fromTheme(mime.iconName(), QIcon::fromTheme(mime.genericIconName(), fallback));
    }
    kinds_.push_back(std::move(kind));
    const int at = int(kinds_.size()) - 1;
    kindByKey_.insert(key, at);
    return at;
}

} // namespace zelto
