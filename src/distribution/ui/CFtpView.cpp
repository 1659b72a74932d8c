#include "CFtpView.h"

#include "distribution/ui/CSiteChooser.h"
#include "profiles/ProfileStore.h"
#include "widgets/ReportList.h"

#include <QAction>
#include <QHeaderView>
#include <QStyle>

namespace zelto {
CFtpView::CFtpView(QWidget* parent) : QTreeView(parent)
{
    setModel(&model_);
    setUpReportList(*this);
    // The last column takes what is left, so that a pane of usual width needs no scroll bar.
    header()->resizeSection(SiteListModel::Server, 140);
    header()->resizeSection(SiteListModel::Login, 80);
    header()->resizeSection(SiteListModel::Password, 70);
    header()->resizeSection(SiteListModel::RemoteFolder, 120);
    chooser_ = [this] {
        CSiteChooser chooser(
            ProfileStore::allProfiles(), ProfileStore::root(), bool(newSiteOpener_), this);
        const bool accepted = chooser.exec() == QDialog::Accepted;
        if (chooser.newSiteWanted())
            newSiteOpener_();
        return accepted ? chooser.chosen() : QStringList();
    };
    createActions();
}

void CFtpView::createActions()
{
    auto* add = new QAction(QIcon::fromTheme(QStringLiteral("list-add"),
                                style()->standardIcon(QStyle::SP_FileDialogNewFolder)),
        tr("Add &Site..."), this);
    add->setShortcut(QKeySequence(Qt::Key_Insert));
    add->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    add->setToolTip(tr("Add target sites from the stored site profiles"));
    connect(add, &QAction::triggered, this, &CFtpView::addSites);
    addAction(add);

    auto* remove = new QAction(QIcon::fromTheme(QStringLiteral("list-remove"),
                                   style()->standardIcon(QStyle::SP_TrashIcon)),
        tr("&Remove Site"), this);
    remove->setShortcut(QKeySequence::Delete);
    remove->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(remove, &QAction::triggered, this, &CFtpView::removeSelected);
    addAction(remove);
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

void CFtpView::addProfiles(const QStringList& files)
{
    model_.addProfiles(files);
}

void CFtpView::refresh()
{
    model_.refresh();
}

void CFtpView::addSites()
{
    addProfiles(chooser_());
}

void CFtpView::removeSelected()
{
    std::vector<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        rows.push_back(index.row());
    model_.removeSites(std::move(rows));
}

} // namespace zelto
