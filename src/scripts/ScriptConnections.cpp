#include "ScriptConnections.h"

#include <algorithm>

namespace zelto {

ScriptConnections::ScriptConnections(QString localFolder) : localFolder_(std::move(localFolder))
{
    ScriptConnection local;
    local.name = QLatin1StringView(kLocalName);
    connections_.push_back(std::move(local));
}

ScriptConnection* ScriptConnections::find(const QString& name)
{
    const auto found = std::find_if(connections_.begin(), connections_.end(),
        [&](const ScriptConnection& connection) { return connection.name == name; });
    return found == connections_.end() ? nullptr : &*found;
}

ScriptConnection& ScriptConnections::add(ScriptConnection connection)
{
    return connections_.emplace_back(std::move(connection));
}

} // namespace zelto
