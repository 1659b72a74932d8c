#pragma once

#include "widgets/CFileView.h"

#include <QStringList>

namespace zelto {

// The files and folders of one local folder on the list base. Rows drag out as local file URLs,
// so any list that takes dropped files takes them; F5 reads the folder again.
class CDirView : public CFileView {
    Q_OBJECT
public:
    explicit CDirView(QWidget* parent = nullptr);

    [[nodiscard]] QString folder() const { return folder_; }
    // Shows the entries of `folder`; an unreadable folder shows none.
    void setFolder(const QString& folder);
    // The full paths of the selected rows, top to bottom as shown.
    [[nodiscard]] QStringList selectedPaths() const;
    [[nodiscard]] QString pathOf(const FileRow& row) const;

public Q_SLOTS:
    void refresh();

Q_SIGNALS:
    // Double click or Return on a file, and on a folder.
    void fileActivated(const QString& path);
    void folderActivated(const QString& path);

protected:
    void startDrag(Qt::DropActions supportedActions) override;

private:
    QString folder_;
};

} // namespace zelto
