#include "CProfView.h"

#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "profiles/ProfileStore.h"
#include "profiles/SiteProfile.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QStyle>

#include <algorithm>

namespace zelto {
namespace {

constexpr int kFileRole = Qt::UserRole + 1;

} // namespace

CProfView::CProfView(ProfileStore& store, QWidget* parent) : QTreeWidget(parent), store_(store)
{
    setColumnCount(1);
    setHeaderLabels({ StringTable::text(ids::kColumnName) });
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setAllColumnsShowFocus(true);
    setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    setSortingEnabled(true);
    sortByColumn(0, Qt::AscendingOrder);
    setAccessibleName(tr("Site profiles"));
    connect(this, &QTreeWidget::itemSelectionChanged, this, [this] {
        const QStringList files = selectedFiles();
        if (!filling_ && files.size() == 1)
            Q_EMIT profileChosen(folder_, QFileInfo(files.front()).fileName());
    });
    connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item) {
        if (!filling_)
            labelEdited(item);
    });
}

void CProfView::showFolder(const QString& folder, const QString& selected)
{
    filling_ = true;
    folder_ = folder;
    clear();
    QTreeWidgetItem* chosen = nullptr;
    for (const QString& file : ProfileStore::profilesIn(folder)) {
        auto* item = new QTreeWidgetItem(this, { SiteProfile::nameOf(file) });
        item->setData(0, kFileRole, file);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        item->setIcon(0, style()->standardIcon(QStyle::SP_DriveNetIcon));
        const ProfileFields fields = SiteProfile::readFields(file);
        item->setToolTip(0,
            fields.description.isEmpty() ? fields.host : fields.host + u'\n' + fields.description);
        if (file == selected)
            chosen = item;
    }
    // Shown as chosen, not opened: the form has just let go of it.
    if (chosen)
        setCurrentItem(chosen);
    filling_ = false;
}

QStringList CProfView::selectedFiles() const
{
    QList<QTreeWidgetItem*> items = selectedItems();
    std::sort(items.begin(), items.end(), [this](QTreeWidgetItem* a, QTreeWidgetItem* b) {
        return indexOfTopLevelItem(a) < indexOfTopLevelItem(b);
    });
    QStringList files;
    for (const QTreeWidgetItem* item : items)
        files.append(item->data(0, kFileRole).toString());
    return files;
}

void CProfView::renameSelected()
{
    if (QTreeWidgetItem* item = currentItem(); item && item->isSelected())
        editItem(item);
}

void CProfView::deleteSelected()
{
    store_.deleteProfiles(selectedFiles());
    showFolder(folder_);
}

void CProfView::labelEdited(QTreeWidgetItem* item)
{
    const QString oldFile = item->data(0, kFileRole).toString();
    const QString renamed = store_.renameProfile(oldFile, item->text(0));
    // Changed in place, since the edit that brought us here still holds the item. The label
    // shows the name as saved ("site.old" is "site"), or the old one when refused.
    const QString file = renamed.isEmpty() ? oldFile : renamed;
    filling_ = true;
    item->setData(0, kFileRole, file);
    item->setText(0, SiteProfile::nameOf(file));
    filling_ = false;
    if (!renamed.isEmpty() && item->isSelected() && selectedItems().size() == 1)
        Q_EMIT profileChosen(folder_, QFileInfo(file).fileName());
}

void CProfView::keyPressEvent(QKeyEvent* event)
{
    if (state() != QAbstractItemView::EditingState) {
        switch (event->key()) {
        case Qt::Key_Delete:
            deleteSelected();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Q_EMIT opened();
            return;
        default:
            break;
        }
    }
    QTreeWidget::keyPressEvent(event);
}

} // namespace zelto
