#include "ProfileBar.h"

#include "profiles/FileListStore.h"
#include "profiles/LinkFile.h"
#include "profiles/ProfileEvents.h"
#include "profiles/ProfileStore.h"

#include <QComboBox>
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

ProfileBar::ProfileBar(ProfileEvents& events, QWidget* parent)
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
    connect(&events, &ProfileEvents::profilesChanged, this, &ProfileBar::readProfiles);
    connect(&events, &ProfileEvents::fileListsChanged, this, &ProfileBar::readFileLists);
    connect(&events, &ProfileEvents::linksChanged, this, &ProfileBar::readLinks);
    readProfiles();
    readFileLists();
    readLinks();
}

void ProfileBar::readProfiles()
{
    fill(sites_, ProfileStore::allProfiles(), &ProfileStore::shownName);
}

void ProfileBar::readFileLists()
{
    fill(fileLists_, FileListStore::listFolders(),
        [](const QString& folder) { return QFileInfo(folder).fileName(); });
}

void ProfileBar::readLinks()
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
