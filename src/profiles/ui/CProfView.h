#pragma once

#include <QTreeWidget>

namespace zelto {

class ProfileStore;

// The site profiles of one folder, by name, sorted. A label edit (F2) renames the profile's file,
// Delete deletes the selected profiles after asking, Return opens the chosen one in the form.
class CProfView final : public QTreeWidget {
    Q_OBJECT
public:
    explicit CProfView(ProfileStore& store, QWidget* parent = nullptr);

    [[nodiscard]] const QString& folder() const { return folder_; }
    // Shows the profiles of `folder`; the profile `selected` (a file) is chosen when given.
    void showFolder(const QString& folder, const QString& selected = {});
    // The profile files of the selected rows, top to bottom.
    [[nodiscard]] QStringList selectedFiles() const;

public Q_SLOTS:
    void renameSelected();
    void deleteSelected();

Q_SIGNALS:
    // Exactly one profile is selected: the form shows it.
    void profileChosen(const QString& folder, const QString& fileName);
    void opened();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void labelEdited(QTreeWidgetItem* item);

    ProfileStore& store_;
    QString folder_;
    bool filling_ = false;
};

} // namespace zelto
