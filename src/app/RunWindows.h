#pragma once

#include "app/BackgroundWork.h"
#include "distribution/LinkDistribution.h"

namespace zelto {

// How an unattended run shows its work on a desktop: each site's transfer window of a link, the
// progress window of a script. Left empty, the run reports on the console alone.
struct RunWindows {
    LinkDistribution::JobStarting linkJob;
    BackgroundWork::ScriptStarting script;
};

} // namespace zelto
