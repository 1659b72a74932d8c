#pragma once

#include <QToolBar>

class QComboBox;

namespace zelto {

class ProfileEvents;

// The profile bar: drop-down lists of the site profiles, the file lists and the links, each item
// carrying its file's path; choosing an item says which. Each list is read again the moment the
// events report a change of what it shows.
class ProfileBar final : public QToolBar {
    Q_OBJECT
public:
    explicit ProfileBar(ProfileEvents& events, QWidget* parent = nullptr);

    void readProfiles();
    void readFileLists();
    void readLinks();

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
