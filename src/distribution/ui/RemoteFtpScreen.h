#pragma once

#include <QObject>

#include <array>
#include <cstddef>

namespace zelto {

class BrowserTransfers;
class Notifier;
class RemoteHalf;
class WorkerThreads;
struct JobServices;

// The two panes of the Remote FTP screen: two remote halves, each with its own connection. Rows
// dropped from one list on the other, or sent by the Copy command of a list (Ctrl+Shift+C), are
// copied between the servers in a transfer window.
class RemoteFtpScreen final : public QObject {
    Q_OBJECT
public:
    RemoteFtpScreen(JobServices& jobs, Notifier& notifier, WorkerThreads& threads,
        BrowserTransfers& transfers, QObject* parent = nullptr);

    [[nodiscard]] RemoteHalf* half(std::size_t i) const { return halves_.at(i); }
    // Copies the files selected in half `from` into the other half's folder.
    void copySelected(std::size_t from);

private:
    void copy(RemoteHalf* from, RemoteHalf* to, const QStringList& names);

    BrowserTransfers& transfers_;
    std::array<RemoteHalf*, 2> halves_ {};
};

} // namespace zelto
