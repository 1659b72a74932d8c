#include "RemoteListing.h"

namespace zelto {

bool RemoteListing::isFolder(const QString& name) const
{
    const auto found = index_.constFind(name);
    return found != index_.constEnd() && entries_[size_t(*found)].isFolder();
}

void RemoteListing::add(RemoteEntry entry)
{
    index_.insert(entry.name, size());
    entries_.push_back(std::move(entry));
}

} // namespace zelto
