#include "ProfileBar.h"

#include "profiles/FileListStore.h"
#include "profiles/LinkFile.h"
#include "profiles/ProfileStore.h"
#include "profiles/SiteProfile.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>

namespace zelto {
namespace {

// Fills `list` with `files` shown as `label` gives them, keeping the shown item when it is still
// there.
template <typename Label> void fill(QComboBox* list, const QStringList& files, Label label)
{
    const QString kept = list->currentData().toString();
    list->clear();
    for (const QString& file : files)
        list->addItem(label(file), file);
    list->setCurrentIndex(list->findData(kept));
}

} // namespace

ProfileBar::ProfileBar(QWidget* parent)
    : QToolBar(tr("Profile Bar"), parent)
    , sites_(addList(tr("S&ite:"), tr("Site profile"), tr("The site profiles")))
    , fileLists_(addList(tr("File li&st:"), tr("File list"), tr("The lists of files")))
    , links_(addList(tr("Lin&k:"), tr("Link"), tr("The links of sites and a file list")))
{
    setObjectName(QStringLiteral("profileBar"));
    const std::pair<QComboBox*, void (ProfileBar::*)(const QString&)> choices[]
        = { { sites_, &ProfileBar::siteChosen }, { fileLists_, &ProfileBar::fileListChosen },
              { links_, &ProfileBar::linkChosen } };
    for (const auto& [list, chosen] : choices) {
        // Only the user's choice: refilling the lists moves the current item too.
        connect(list, &QComboBox::activated, this, [this, list, chosen](int index) {
            Q_EMIT(this->*chosen)(list->itemData(index).toString());
        });
    }
    profilesChanged();
    fileListsChanged();
    linksChanged();
}

void ProfileBar::profilesChanged()
{
    // Profiles may sit in folders: they show with their folder below the root.
    const QDir root(ProfileStore::root());
    fill(sites_, ProfileStore::allProfiles(), [&](const QString& file) {
        const QString folder = root.relativeFilePath(QFileInfo(file).path());
        const QString name = SiteProfile::nameOf(file);
        return folder == u'.' ? name : folder + u'/' + name;
    });
}

void ProfileBar::fileListsChanged()
{
    fill(fileLists_, FileListStore::listFolders(),
        [](const QString& folder) { return QFileInfo(folder).fileName(); });
}

void ProfileBar::linksChanged()
{
    fill(links_, LinkFile::linkFiles(), &LinkFile::nameOf);
}

QComboBox* ProfileBar::addList(const QString& label, const QString& hint, const QString& tip)
{
    auto* caption = new QLabel(label);
    caption->setContentsMargins(6, 0, 4, 0);
    auto* list = new QComboBox;
    list->setPlaceholderText(hint);
    list->setToolTip(tip);
    list->setMinimumContentsLength(14);
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    caption->setBuddy(list);
    addWidget(caption);
    addWidget(list);
    return list;
}

} // namespace zelto
