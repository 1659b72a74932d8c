#include "CLinkDlg.h"

#include "profiles/FileListStore.h"
#include "profiles/FolderTree.h"
#include "profiles/LinkFile.h"
#include "profiles/ProfileEvents.h"
#include "profiles/ProfileStore.h"
#include "profiles/SiteProfile.h"
#include "settings/SettingsKeys.h"
#include "widgets/CHelpWindow.h"
#include "widgets/StoredPlacement.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

namespace zelto {
namespace {

const QString kPlacement = QLatin1StringView(settings::geometry::kLinkDialog);
// Both trees and both lists show a dozen rows and paths of a usual length.
constexpr QSize kReadableSize(760, 560);

void choose(QComboBox* picker, const QString& file)
{
    const QSignalBlocker quiet(picker);
    picker->setCurrentIndex(file.isEmpty() ? -1 : picker->findData(file));
}

QString folderName(const QString& folder)
{
    return QFileInfo(folder).fileName();
}

CPickTree::Source profileSource()
{
    return { CLinkDlg::tr("Profiles"), &ProfileStore::root, &FolderTree::subFolders,
        &ProfileStore::profilesIn, &SiteProfile::nameOf, QStyle::SP_DriveNetIcon };
}

// Lists do not nest: the lists are the leaves of the root.
CPickTree::Source listSource()
{
    return { CLinkDlg::tr("Files"), &FileListStore::root,
        [](const QString&) { return QStringList(); },
        [](const QString&) { return FileListStore::listFolders(); }, &folderName,
        QStyle::SP_FileDialogDetailedView };
}

QLabel* buddyLabel(const QString& text, QWidget* buddy)
{
    auto* label = new QLabel(text, buddy->parentWidget());
    label->setBuddy(buddy);
    return label;
}

bool isReturn(const QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<const QKeyEvent*>(event)->key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

CLinkDlg::CLinkDlg(Notifier& notifier, ProfileEvents& events, QWidget* parent)
    : QDialog(parent)
    , editor_(notifier, events)
    , links_(new QComboBox(this))
    , profiles_(new CPickTree(profileSource(), this))
    , fileLists_(new CPickTree(listSource(), this))
    , name_(new QLineEdit(this))
    , sites_(new QListWidget(this))
    , files_(new QListWidget(this))
    , note_(new QLabel(this))
{
    setWindowTitle(tr("Profile / File Links"));
    CHelpWindow::bindHelpKey(*this, QStringLiteral("links"));
    links_->setPlaceholderText(tr("Choose a link to show or change it"));
    links_->setMinimumContentsLength(24);
    links_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    profiles_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    profiles_->setToolTip(tr("Return or Add Site adds the chosen profiles; a folder adds all "
                             "the profiles in it."));
    sites_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    name_->setToolTip(tr("Return adds the link under this name."));

    auto* top = new QFormLayout;
    top->addRow(tr("&Link:"), links_);
    top->addRow(tr("Link &Name:"), name_);

    auto* addSite = new QPushButton(tr("Add Si&te"), this);
    auto* removeSite = new QPushButton(tr("Remo&ve Site"), this);
    connect(addSite, &QPushButton::clicked, this, &CLinkDlg::addSites);
    connect(removeSite, &QPushButton::clicked, this, &CLinkDlg::removeSites);
    auto* siteButtons = new QVBoxLayout;
    siteButtons->addStretch();
    siteButtons->addWidget(addSite);
    siteButtons->addWidget(removeSite);
    siteButtons->addStretch();

    auto* lists = new QGridLayout;
    lists->addWidget(buddyLabel(tr("Site &profiles:"), profiles_), 0, 0);
    lists->addWidget(buddyLabel(tr("S&ites of the link:"), sites_), 0, 2);
    lists->addWidget(profiles_, 1, 0);
    lists->addLayout(siteButtons, 1, 1);
    lists->addWidget(sites_, 1, 2);
    note_->setWordWrap(true);
    note_->setObjectName(QStringLiteral("note"));
    lists->addWidget(buddyLabel(tr("&File list:"), fileLists_), 2, 0);
    lists->addWidget(buddyLabel(tr("File&s of the list:"), files_), 2, 1, 1, 2);
    lists->addWidget(fileLists_, 3, 0);
    lists->addWidget(files_, 3, 1, 1, 2);
    lists->setColumnStretch(0, 1);
    lists->setColumnStretch(2, 2);

    auto* buttons = new QDialogButtonBox(this);
    const std::pair<QString, void (CLinkDlg::*)()> commands[]
        = { { tr("&Add"), &CLinkDlg::addLink }, { tr("&Rename"), &CLinkDlg::renameLink },
              { tr("&Delete"), &CLinkDlg::deleteLink }, { tr("R&eset"), &CLinkDlg::reset } };
    std::vector<QPushButton*> made;
    for (const auto& [text, slot] : commands) {
        made.push_back(buttons->addButton(text, QDialogButtonBox::ActionRole));
        connect(made.back(), &QPushButton::clicked, this, slot);
    }
    connect(
        buttons->addButton(QDialogButtonBox::Close), &QPushButton::clicked, this, &QDialog::close);
    // Return adds the link, as the name typed last asks; the profile tree keeps Return for its
    // sites.
    made.front()->setDefault(true);
    for (QPushButton* button : { addSite, removeSite })
        button->setAutoDefault(false);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(lists, 1);
    layout->addWidget(note_);
    layout->addWidget(buttons);

    // Reading order: the link, its name, then each pane left to right, top to bottom.
    QWidget* const order[]
        = { links_, name_, profiles_, addSite, removeSite, sites_, fileLists_, files_, buttons };
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);

    connect(links_, &QComboBox::activated, this, [this](int index) {
        editor_.pickLink(links_->itemData(index).toString());
        name_->setText(LinkFile::nameOf(editor_.selectedLink()));
        showEditor();
    });
    // A double click on a folder opens or closes it, as everywhere; on a profile it adds the site.
    connect(profiles_, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
        if (item->childCount() == 0)
            addSites();
    });
    connect(fileLists_, &QTreeWidget::currentItemChanged, this, [this] {
        const QString list = fileLists_->currentLeaf();
        if (list.isEmpty())
            return;
        editor_.chooseList(list);
        showEditor();
    });
    connect(name_, &QLineEdit::textEdited, this,
        [this](const QString& text) { editor_.setName(text); });
    for (QWidget* watched : { static_cast<QWidget*>(sites_), static_cast<QWidget*>(profiles_) })
        watched->installEventFilter(this);
    // Whatever is made, renamed or deleted elsewhere shows in the pickers at once.
    for (auto changed : { &ProfileEvents::profilesChanged, &ProfileEvents::fileListsChanged,
             &ProfileEvents::linksChanged })
        connect(&events, changed, this, &CLinkDlg::fillPickers);
    fillPickers();
    StoredPlacement::restore(*this, kPlacement, kReadableSize, parent);
    StoredPlacement::keep(*this, kPlacement);
}

CLinkDlg* CLinkDlg::showOrRaise(Notifier& notifier, ProfileEvents& events, QWidget* frame)
{
    static QPointer<CLinkDlg> open;
    if (!open) {
        open = new CLinkDlg(notifier, events, frame);
        open->setAttribute(Qt::WA_DeleteOnClose);
    }
    open->show();
    open->raise();
    open->activateWindow();
    return open;
}

void CLinkDlg::addLink()
{
    editor_.setName(name_->text());
    if (!editor_.add())
        return;
    // The dialog empties itself: without a word the user cannot tell a saved link from a lost one.
    note_->setText(
        tr("The link %1 is saved.").arg(LinkFile::nameOf(LinkFile::fileNameFor(name_->text()))));
    editor_.reset();
    name_->clear();
    showEditor();
}

void CLinkDlg::renameLink()
{
    editor_.setName(name_->text());
    if (editor_.rename())
        showEditor();
}

void CLinkDlg::deleteLink()
{
    if (!editor_.remove())
        return;
    editor_.reset();
    name_->clear();
    showEditor();
}

void CLinkDlg::reset()
{
    note_->clear();
    editor_.reset();
    name_->clear();
    showEditor();
}

void CLinkDlg::addSites()
{
    QStringList refused;
    for (const QString& profile : profiles_->chosen()) {
        if (!editor_.pickProfile(profile))
            refused.append(SiteProfile::nameOf(profile));
    }
    // A site of a host the link holds already is left out; the user is told why, in place.
    note_->setText(refused.isEmpty()
            ? QString()
            : tr("Not added, since the link has a site of the same host already: %1.")
                  .arg(refused.join(QStringLiteral(", "))));
    showEditor();
}

void CLinkDlg::removeSites()
{
    QList<int> rows;
    for (const QListWidgetItem* item : sites_->selectedItems())
        rows.append(sites_->row(item));
    // From the bottom, so that the rows still to go keep their numbers.
    std::sort(rows.rbegin(), rows.rend());
    for (const int row : rows)
        editor_.removeSite(row);
    showEditor();
}

void CLinkDlg::fillPickers()
{
    profiles_->refill();
    fileLists_->refill();
    {
        const QSignalBlocker quiet(links_);
        links_->clear();
        for (const QString& file : LinkFile::linkFiles())
            links_->addItem(LinkFile::nameOf(file), file);
    }
    showEditor();
}

void CLinkDlg::showEditor()
{
    sites_->clear();
    for (const LinkSiteRow& row : editor_.sites()) {
        // The profile beside its host: a link kept from before may name several of one host.
        auto* item = new QListWidgetItem(
            tr("%1 (%2)").arg(row.host, ProfileStore::shownName(row.profile)), sites_);
        item->setToolTip(QDir::toNativeSeparators(row.profile));
    }
    files_->clear();
    for (const QString& row : editor_.fileRows())
        files_->addItem(QDir::toNativeSeparators(row));
    choose(links_, editor_.selectedLink());
    fileLists_->showCurrent(editor_.selectedList());
}

bool CLinkDlg::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == profiles_ && isReturn(event)) {
        addSites();
        return true;
    }
    if (watched == sites_ && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete) {
        removeSites();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace zelto
