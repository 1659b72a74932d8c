#include "StoredSplitter.h"

#include "settings/SettingsStore.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace zelto {
namespace {

using namespace settings::geometry;

QString section(const QString& name)
{
    return QString::fromLatin1(kSplitterSectionPattern).arg(name);
}

QString rowKey(int row)
{
    return QString::fromLatin1(kRowPattern).arg(row);
}

QString colKey(int column)
{
    return QString::fromLatin1(kColPattern).arg(column);
}

} // namespace

StoredSplitter::StoredSplitter(const QString& name, Qt::Orientation orientation, QWidget* parent)
    : QSplitter(orientation, parent), name_(name)
{
    setObjectName(name);
    setChildrenCollapsible(false);
}

void StoredSplitter::restoreSizes()
{
    // Across the panes there is one row or one column, whose size is the splitter's own.
    const bool stacked = orientation() == Qt::Vertical;
    QList<int> sizes;
    for (int pane = 0; pane < count(); ++pane) {
        const int stored = SettingsStore::getInt(
            section(name_), stacked ? rowKey(pane) : colKey(pane), kPaneFallback);
        sizes.append(std::max(stored, kPaneMinimum));
    }
    // Until it is shown the splitter's own length is a guess: the sizes wait for the real one.
    if (shown_)
        setSizes(scaledToFit(sizes));
    else
        restored_ = sizes;
}

void StoredSplitter::saveSizes() const
{
    if (!shown_)
        return;
    const bool stacked = orientation() == Qt::Vertical;
    const QList<int> panes = sizes();
    const QString where = section(name_);
    const auto write
        = [&](const QString& key, int value) { SettingsStore::writeInt(where, key, value); };
    for (int pane = 0; pane < panes.size(); ++pane)
        write(stacked ? rowKey(pane) : colKey(pane), panes[pane]);
    write(stacked ? colKey(0) : rowKey(0), stacked ? width() : height());
    write(QLatin1StringView(kNumRows), stacked ? int(panes.size()) : 1);
    write(QLatin1StringView(kNumCols), stacked ? 1 : int(panes.size()));
}

void StoredSplitter::showEvent(QShowEvent* event)
{
    QSplitter::showEvent(event);
    shown_ = true;
    if (!restored_.isEmpty())
        setSizes(scaledToFit(std::exchange(restored_, {})));
}

QList<int> StoredSplitter::scaledToFit(QList<int> sizes) const
{
    // The splitter shares out any difference by its own rules, which favour the pane with the
    // larger minimum; in proportion is what the user left.
    const int room = (orientation() == Qt::Horizontal ? width() : height())
        - handleWidth() * int(sizes.size() - 1);
    const qint64 total = std::accumulate(sizes.begin(), sizes.end(), qint64(0));
    if (room <= 0 || total <= 0)
        return sizes;
    int given = 0;
    for (int& size : sizes) {
        size = int(size * room / total);
        given += size;
    }
    sizes.back() += room - given;
    return sizes;
}

} // namespace zelto
