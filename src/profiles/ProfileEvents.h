#pragma once

namespace zelto {

// What the main frame hears from the profile, file-list and link operations, so that its profile
// bar shows the current sites and links. Called on the UI thread.
class ProfileEvents {
public:
    virtual ~ProfileEvents() = default;
    // A profile was made, renamed, deleted or imported.
    virtual void profilesChanged() = 0;
    // Links were added, renamed or deleted, or their upkeep ran: reload the list of links.
    virtual void linksChanged() = 0;
};

} // namespace zelto
