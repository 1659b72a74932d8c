#include "CLinkDlg.h"

#include "profiles/FileListStore.h"
#include "profiles/LinkFile.h"
#include "profiles/ProfileEvents.h"
#include "profiles/ProfileStore.h"
#include "widgets/CHelpWindow.h"

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

namespace zelto {
namespace {

// Fills `picker` with `files` shown as `label` gives them, none chosen.
template <typename Label> void fill(QComboBox* picker, const QStringList& files, Label label)
{
    const QSignalBlocker quiet(picker);
    picker->clear();
    for (const QString& file : files)
        picker->addItem(label(file), file);
    picker->setCurrentIndex(-1);
}

void choose(QComboBox* picker, const QString& file)
{
    const QSignalBlocker quiet(picker);
    picker->setCurrentIndex(file.isEmpty() ? -1 : picker->findData(file));
}

QComboBox* picker(const QString& hint, QWidget* parent)
{
    auto* combo = new QComboBox(parent);
    combo->setPlaceholderText(hint);
    combo->setMinimumContentsLength(24);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    return combo;
}

} // namespace

CLinkDlg::CLinkDlg(Notifier& notifier, ProfileEvents& events, QWidget* parent)
    : QDialog(parent)
    , editor_(notifier, events)
    , links_(picker(tr("Choose a link to show or change it"), this))
    , profiles_(picker(tr("Choose a site to add it"), this))
    , fileLists_(picker(tr("Choose the list of files"), this))
    , name_(new QLineEdit(this))
    , sites_(new QListWidget(this))
    , files_(new QListWidget(this))
{
    setWindowTitle(tr("Profile / File Links"));
    CHelpWindow::bindHelpKey(*this, QStringLiteral("links"));
    sites_->setAccessibleName(tr("Sites of the link"));
    files_->setAccessibleName(tr("Files of the link"));

    auto* pickers = new QFormLayout;
    pickers->addRow(tr("&Link:"), links_);
    pickers->addRow(tr("&Profiles:"), profiles_);
    pickers->addRow(tr("&File List:"), fileLists_);
    pickers->addRow(tr("Link &Name:"), name_);

    auto* lists = new QGridLayout;
    auto* sitesLabel = new QLabel(tr("S&ites (Delete removes one):"), this);
    sitesLabel->setBuddy(sites_);
    auto* filesLabel = new QLabel(tr("File&s:"), this);
    filesLabel->setBuddy(files_);
    lists->addWidget(sitesLabel, 0, 0);
    lists->addWidget(filesLabel, 0, 1);
    lists->addWidget(sites_, 1, 0);
    lists->addWidget(files_, 1, 1);
    lists->setColumnStretch(1, 2);
    lists->setColumnStretch(0, 1);

    auto* buttons = new QDialogButtonBox(this);
    const std::pair<QString, void (CLinkDlg::*)()> commands[]
        = { { tr("&Add"), &CLinkDlg::addLink }, { tr("&Rename"), &CLinkDlg::renameLink },
              { tr("&Delete"), &CLinkDlg::deleteLink }, { tr("R&eset"), &CLinkDlg::reset } };
    for (const auto& [text, slot] : commands)
        connect(buttons->addButton(text, QDialogButtonBox::ActionRole), &QPushButton::clicked, this,
            slot);
    connect(
        buttons->addButton(QDialogButtonBox::Close), &QPushButton::clicked, this, &QDialog::close);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(pickers);
    layout->addLayout(lists, 1);
    layout->addWidget(buttons);

    connect(links_, &QComboBox::activated, this, [this](int index) {
        editor_.pickLink(links_->itemData(index).toString());
        name_->setText(LinkFile::nameOf(editor_.selectedLink()));
        showEditor();
    });
    connect(profiles_, &QComboBox::activated, this, [this](int index) {
        editor_.pickProfile(profiles_->itemData(index).toString());
        showEditor();
    });
    connect(fileLists_, &QComboBox::activated, this, [this](int index) {
        editor_.pickList(fileLists_->itemData(index).toString());
        showEditor();
    });
    connect(name_, &QLineEdit::textEdited, this,
        [this](const QString& text) { editor_.setName(text); });
    sites_->installEventFilter(this);
    // Whatever is made, renamed or deleted elsewhere shows in the pickers at once.
    for (auto changed : { &ProfileEvents::profilesChanged, &ProfileEvents::fileListsChanged,
             &ProfileEvents::linksChanged })
        connect(&events, changed, this, &CLinkDlg::fillPickers);
    fillPickers();
    resize(sizeHint().expandedTo(QSize(720, 460)));
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
    editor_.reset();
    name_->clear();
    showEditor();
}

void CLinkDlg::fillPickers()
{
    fill(profiles_, ProfileStore::allProfiles(), &ProfileStore::shownName);
    fill(fileLists_, FileListStore::listFolders(),
        [](const QString& folder) { return QFileInfo(folder).fileName(); });
    fill(links_, LinkFile::linkFiles(), &LinkFile::nameOf);
    showEditor();
}

void CLinkDlg::showEditor()
{
    sites_->clear();
    for (const LinkSiteRow& row : editor_.sites()) {
        auto* item = new QListWidgetItem(row.host, sites_);
        item->setToolTip(QDir::toNativeSeparators(row.profile));
    }
    files_->clear();
    for (const QString& row : editor_.fileRows())
        files_->addItem(QDir::toNativeSeparators(row));
    choose(links_, editor_.selectedLink());
    choose(fileLists_, editor_.selectedList());
    choose(profiles_, {});
}

bool CLinkDlg::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == sites_ && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete) {
        removeSelectedSite();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void CLinkDlg::removeSelectedSite()
{
    editor_.removeSite(sites_->currentRow());
    showEditor();
}

} // namespace zelto
