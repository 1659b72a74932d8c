#pragma once

#include <QStyle>
#include <QTreeWidget>

#include <functional>

namespace zelto {

// A read-only tree to choose stored things from: folders as branches, the things as leaves, both
// read from disk on every refill. Choosing a folder chooses every leaf below it.
class CPickTree final : public QTreeWidget {
    Q_OBJECT
public:
    // Where the tree comes from: its root folder and label, a folder's sub-folders and leaves
    // (paths), and how a leaf is shown.
    struct Source {
        QString rootLabel;
        std::function<QString()> root;
        std::function<QStringList(const QString& folder)> folders;
        std::function<QStringList(const QString& folder)> leaves;
        std::function<QString(const QString& leaf)> label;
        QStyle::StandardPixmap leafIcon;
    };

    explicit CPickTree(Source source, QWidget* parent = nullptr);

    // Reads the tree again, keeping the current item and the folders the user closed.
    void refill();
    // The leaves of the selected items (of the current one when none is selected) and of
    // everything below a chosen folder, in tree order.
    [[nodiscard]] QStringList chosen() const;
    // The leaf of the current item; empty on a folder.
    [[nodiscard]] QString currentLeaf() const;
    // Makes the leaf `path` current without telling anyone; an empty or unknown path clears it.
    void showCurrent(const QString& path);

private:
    void fill(QTreeWidgetItem* item, const QString& folder);
    [[nodiscard]] QTreeWidgetItem* itemOf(const QString& path) const;

    Source source_;
};

} // namespace zelto
