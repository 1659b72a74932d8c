#pragma once

#include "ftp/RemoteEntry.h"

#include <QHash>
#include <QString>

#include <vector>

namespace zelto {

// The entries of one remote folder, in the order the server listed them, found by name.
class RemoteListing final {
public:
    // A reply past either bound is refused: a server that never ends its listing must not take
    // the client's memory. Both are far beyond any folder a person keeps.
    static constexpr qint64 kMaxBytes = 64LL * 1024 * 1024;
    static constexpr qsizetype kMaxEntries = 500'000;

    [[nodiscard]] const std::vector<RemoteEntry>& entries() const { return entries_; }
    [[nodiscard]] qsizetype size() const { return qsizetype(entries_.size()); }
    [[nodiscard]] bool contains(const QString& name) const { return index_.contains(name); }
    [[nodiscard]] bool isFolder(const QString& name) const;

    // A name listed twice (a hostile server) is shown twice; look-ups find the later entry.
    void add(RemoteEntry entry);

private:
    std::vector<RemoteEntry> entries_;
    QHash<QString, qsizetype> index_;
};

} // namespace zelto
