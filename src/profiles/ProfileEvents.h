#pragma once

#include <QObject>

namespace zelto {

// The one place that hears of changed site profiles, file lists and links, whichever window or
// operation changed them: the stores and screens emit, and whatever shows the stored data (the
// profile bar, the other screens) listens. Lives on the UI thread.
class ProfileEvents : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

Q_SIGNALS:
    // A profile or profile folder was made, renamed, deleted or imported.
    void profilesChanged();
    // A file list was made, saved under a new name, renamed or deleted.
    void fileListsChanged();
    // Links were added, renamed or deleted, or their upkeep ran: reload the list of links.
    void linksChanged();
};

} // namespace zelto
