#include "CSiteChooser.h"

#include "profiles/SiteProfile.h"
#include "profiles/StoredFormats.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

namespace zelto {
namespace {

constexpr int kFileRole = Qt::UserRole + 1;

// The profile's path below the root, without ".ini": "customers/acme".
QString shownName(const QString& file, const QString& root)
{
    const QString relative = QDir(root).relativeFilePath(file);
    const QString name = SiteProfile::nameOf(relative);
    return QDir::toNativeSeparators(name);
}

} // namespace

CSiteChooser::CSiteChooser(
    const QStringList& profiles, const QString& root, bool offerNewSite, QWidget* parent)
    : QDialog(parent)
    , filter_(new QLineEdit(this))
    , profiles_(new QStandardItemModel(0, 2, this))
    , shown_(new QSortFilterProxyModel(this))
    , list_(new QTreeView(this))
    , buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(tr("Add Site"));
    profiles_->setHorizontalHeaderLabels({ tr("Profile"), tr("Server") });
    for (const QString& file : profiles) {
        auto* name = new QStandardItem(shownName(file, root));
        name->setData(file, kFileRole);
        name->setToolTip(QDir::toNativeSeparators(file));
        auto* server
            = new QStandardItem(SiteProfile::readSite(file, profilefile::kTargetListBuffer).host);
        for (QStandardItem* item : { name, server })
            item->setEditable(false);
        profiles_->appendRow({ name, server });
    }
    shown_->setSourceModel(profiles_);
    shown_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    shown_->setFilterKeyColumn(-1);

    filter_->setPlaceholderText(tr("Filter by profile or server"));
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
    list_->header()->resizeSection(0, 220);
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
