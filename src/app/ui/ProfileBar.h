#pragma once

#include "profiles/ProfileEvents.h"

#include <QToolBar>

class QComboBox;

namespace zelto {

// The profile bar: drop-down lists of the site profiles, the file lists and the links, each item
// carrying its file's path; choosing an item says which. The lists are read again whenever the
// profile and link operations report a change.
class ProfileBar final : public QToolBar, public ProfileEvents {
    Q_OBJECT
public:
    explicit ProfileBar(QWidget* parent = nullptr);

    void profilesChanged() override;
    void linksChanged() override;
    // The file lists; they are made and renamed by the file-list screen.
    void fileListsChanged();

    [[nodiscard]] QComboBox* sites() const { return sites_; }
    [[nodiscard]] QComboBox* fileLists() const { return fileLists_; }
    [[nodiscard]] QComboBox* links() const { return links_; }

Q_SIGNALS:
    void siteChosen(const QString& profileFile);
    void fileListChosen(const QString& listFolder);
    void linkChosen(const QString& linkFile);

private:
    QComboBox* addList(const QString& label, const QString& hint, const QString& tip);

    QComboBox* sites_;
    QComboBox* fileLists_;
    QComboBox* links_;
};

} // namespace zelto
