#pragma once

#include "scripts/ScriptConnection.h"

#include <QString>

#include <list>

namespace zelto {

// The connections of one script run, in the order they were opened, after the pseudo-connection
// LOCAL that stands for the local side and holds the local folder. Names are compared exactly.
class ScriptConnections final {
public:
    static constexpr char kLocalName[] = "LOCAL";

    explicit ScriptConnections(QString localFolder);
    ScriptConnections(const ScriptConnections&) = delete;
    ScriptConnections& operator=(const ScriptConnections&) = delete;

    [[nodiscard]] ScriptConnection* find(const QString& name);
    // Adds a connection whose name is not in the table yet.
    ScriptConnection& add(ScriptConnection connection);

    [[nodiscard]] const QString& localFolder() const { return localFolder_; }
    void setLocalFolder(const QString& folder) { localFolder_ = folder; }

    // Every connection, LOCAL first.
    [[nodiscard]] std::list<ScriptConnection>& all() { return connections_; }

private:
    QString localFolder_;
    std::list<ScriptConnection> connections_;
};

} // namespace zelto
