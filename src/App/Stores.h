#pragma once

#include "Focus/FocusStore.h"
#include "Focus/Stretch.h"
#include "Mascot/MascotStage.h"

namespace kippo {

/// What the application knows, apart from the agents: their store needs more of the machine. Made before anything shows
/// it, and it outlives everything that does.
struct Stores {
    Stores(Scheduler& scheduler, UserDefaults& defaults, Sounds& sounds)
        : focus(scheduler, defaults), stretch(scheduler, sounds), mascotStage(scheduler) {}

    FocusStore focus;
    StretchStore stretch;
    MascotStage mascotStage;
};

} // namespace kippo
