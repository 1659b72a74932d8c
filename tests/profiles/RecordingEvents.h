#pragma once

#include "profiles/ProfileEvents.h"

namespace zelto::test {

// Counts what the main frame would have been told.
class RecordingEvents final : public ProfileEvents {
public:
    void profilesChanged() override { ++profiles; }
    void linksChanged() override { ++links; }

    int profiles = 0;
    int links = 0;
};

} // namespace zelto::test
