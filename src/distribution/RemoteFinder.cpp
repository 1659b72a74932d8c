#include "RemoteFinder.h"

#include "ftp/FtpConnection.h"

namespace zelto {
namespace {

bool isSeparator(QChar c)
{
    return c == u'/' || c == u'\\';
}

QString keyOf(const QString& folder)
{
    auto key = folder;
    while (key.size() > 1 && isSeparator(key.back()))
        key.chop(1);
    return key;
}

} // namespace

RemoteFinder::RemoteFinder(FtpConnection& connection, QString homeFolder)
    : connection_(connection), home_(std::move(homeFolder))
{
}

RemoteFinder::FolderOutcome RemoteFinder::ensureFolder(const FolderStep& step)
{
    const auto key = keyOf(step.path);
    if (folders_.contains(key))
        return {};
    if (const auto refused = refused_.find(key); refused != refused_.end())
        return { *refused };
    if (const auto& parent = listing(step.parent); parent && parent->isFolder(step.name)) {
        folders_.insert(key);
        return {};
    }

    auto made = connection_.makeFolder(step.path);
    if (!made.ok() && !changesInto(step.path)) {
        refused_.insert(key, made);
        return { made };
    }
    folders_.insert(key);
    if (!made.ok())
        return {};
    listings_.insert(key, RemoteListing {}); // new, so empty: no need to list it
    if (auto parent = listings_.find(keyOf(step.parent)); parent != listings_.end() && *parent)
        (*parent)->add({ step.name, RemoteEntry::Kind::Folder });
    return { FtpResult::success(), true };
}

bool RemoteFinder::contains(const QString& folder, const QString& name)
{
    const auto& found = listing(folder);
    return found && found->contains(name);
}

void RemoteFinder::stored(const QString& folder, const QString& name)
{
    if (auto known = listings_.find(keyOf(folder)); known != listings_.end() && *known)
        (*known)->add({ name });
}

void RemoteFinder::forget(const QString& folder)
{
    listings_.remove(keyOf(folder));
}

const std::optional<RemoteListing>& RemoteFinder::listing(const QString& folder)
{
    const auto key = keyOf(folder);
    if (const auto known = listings_.constFind(key); known != listings_.constEnd())
        return *known;
    auto listed = connection_.list(key);
    auto& entry = listings_[key];
    if (listed.ok())
        entry = std::move(listed.value);
    return entry;
}

bool RemoteFinder::changesInto(const QString& folder)
{
    if (!connection_.changeFolder(folder).ok())
        return false;
    // Back to where relative names start; should that fail, the next operation says so.
    static_cast<void>(connection_.changeFolder(home_));
    return true;
}

} // namespace zelto
