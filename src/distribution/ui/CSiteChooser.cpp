#include "CSiteChooser.h"

#include "profiles/SiteProfile.h"
#include "profiles/StoredFormats.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

namespace zelto {
namespace {

constexpr int kFileRole = Qt::UserRole + 1;

// A profile as the list shows it: its name, and its folder below the root ("" at the root).
struct Shown {
    QString file;
    QString name;
    QString folder;
};

// By folder, then by name, as the folders are listed elsewhere: letter case aside.
std::vector<Shown> shownInOrder(const QStringList& profiles, const QString& root)
{
    std::vector<Shown> shown;
    for (const QString& file : profiles) {
        const QString relative = QDir(root).relativeFilePath(file);
        const QString folder = QFileInfo(relative).path();
        shown.push_back({ file, SiteProfile::nameOf(relative),
            folder == QStringLiteral(".") ? QString() : QDir::toNativeSeparators(folder) });
    }
    std::stable_sort(shown.begin(), shown.end(), [](const Shown& a, const Shown& b) {
        if (const int folders = a.folder.compare(b.folder, Qt::CaseInsensitive); folders != 0)
            return folders < 0;
        return a.name.compare(b.name, Qt::CaseInsensitive) < 0;
    });
    return shown;
}

} // namespace

CSiteChooser::CSiteChooser(
    const QStringList& profiles, const QString& root, bool offerNewSite, QWidget* parent)
    : QDialog(parent)
    , filter_(new QLineEdit(this))
    , profiles_(new QStandardItemModel(0, 3, this))
    , shown_(new QSortFilterProxyModel(this))
    , list_(new QTreeView(this))
    , buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(tr("Add Site"));
    profiles_->setHorizontalHeaderLabels({ tr("Profile"), tr("Folder"), tr("Server") });
    for (const Shown& profile : shownInOrder(profiles, root)) {
        auto* name = new QStandardItem(profile.name);
        name->setData(profile.file, kFileRole);
        name->setToolTip(QDir::toNativeSeparators(profile.file));
        auto* folder = new QStandardItem(profile.folder);
        auto* server = new QStandardItem(
            SiteProfile::readSite(profile.file, profilefile::kTargetListBuffer).host);
        for (QStandardItem* item : { name, folder, server })
            item->setEditable(false);
        profiles_->appendRow({ name, folder, server });
    }
    shown_->setSourceModel(profiles_);
    shown_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    shown_->setFilterKeyColumn(-1);

    filter_->setPlaceholderText(tr("Filter by profile, folder or server"));
    // Down goes into the list, Return takes the one profile left.
    filter_->installEventFilter(this);
    filter_->setClearButtonEnabled(true);
    connect(filter_, &QLineEdit::textChanged, shown_, &QSortFilterProxyModel::setFilterFixedString);
    auto* filterLabel = new QLabel(tr("&Filter:"), this);
    filterLabel->setBuddy(filter_);

    list_->setModel(shown_);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setAllColumnsShowFocus(true);
    list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list_->setSelectionBehavior(QAbstractItemView::SelectRows);
    list_->header()->resizeSection(0, 160);
    list_->header()->resizeSection(1, 140);
    connect(list_, &QTreeView::doubleClicked, this, &QDialog::accept);
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        &CSiteChooser::updateOk);

    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    updateOk();

    auto* layout = new QVBoxLayout(this);
    auto* filterRow = new QHBoxLayout;
    filterRow->addWidget(filterLabel);
    filterRow->addWidget(filter_);
    layout->addLayout(filterRow);
    layout->addWidget(list_);
    if (profiles.isEmpty()) {
        // An empty list with no way forward leaves a new user stuck here.
        auto* none = new QLabel(offerNewSite
                ? tr("There are no site profiles yet. Make one with New site..., or later with "
                     "FTP Profiles... in the FTP menu.")
                : tr("There are no site profiles yet. Make one with FTP Profiles... in the FTP "
                     "menu."),
            this);
        none->setWordWrap(true);
        layout->addWidget(none);
        if (offerNewSite) {
            QPushButton* newSite
                = buttons_->addButton(tr("&New site..."), QDialogButtonBox::ActionRole);
            connect(newSite, &QPushButton::clicked, this, [this] {
                newSiteWanted_ = true;
                reject();
            });
            newSite->setObjectName(QStringLiteral("newSite"));
            newSite->setDefault(true);
        }
    }
    layout->addWidget(buttons_);
    resize(480, 360);
}

bool CSiteChooser::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != filter_ || event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Down && shown_->rowCount() > 0) {
        list_->setFocus(Qt::TabFocusReason);
        if (!list_->selectionModel()->hasSelection())
            list_->setCurrentIndex(shown_->index(0, 0));
        return true;
    }
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && shown_->rowCount() == 1) {
        list_->setCurrentIndex(shown_->index(0, 0));
        accept();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

QStringList CSiteChooser::chosen() const
{
    QModelIndexList rows = list_->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    QStringList files;
    for (const QModelIndex& row : rows)
        files.append(row.data(kFileRole).toString());
    return files;
}

void CSiteChooser::updateOk()
{
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(list_->selectionModel()->hasSelection());
}

} // namespace zelto
