#pragma once

#include "widgets/CFileView.h"

#include <QStringList>

namespace zelto {

// The files of the remote browser's current folder, on the shared list base. Its rows drag out
// to the other lists and trees of the browser; it takes local files (a put) and rows of another
// remote list (a copy) dropped on it. The keys of the list: F2 rename, Delete, Backspace to the
// parent folder, F5 to list the folder again (Return opens, as a double click does).
class CRemFilesView final : public CFileView {
    Q_OBJECT
public:
    // What a drag of remote rows carries; the rows themselves are the source list's selection.
    static constexpr auto kMimeType = "application/x-zelto-remote-rows";

    explicit CRemFilesView(QWidget* parent = nullptr);

    // The list a drop of remote rows came from, or none.
    [[nodiscard]] static CRemFilesView* dragSource(const QDropEvent* event);

Q_SIGNALS:
    void renameRequested();
    void deleteRequested();
    void parentRequested();
    void refreshRequested();
    // `fromShell`: dragged from outside the program (the desktop's file manager).
    void localFilesDropped(const QStringList& paths, bool fromShell);
    void remoteRowsDropped(zelto::CRemFilesView* source);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    [[nodiscard]] bool accepts(const QDropEvent* event) const;
};

} // namespace zelto
