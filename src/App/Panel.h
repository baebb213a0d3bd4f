#pragma once

#include "Agents/Views/AgentsViewModel.h"
#include "Agents/Views/LeftBehindViewModel.h"
#include "Agents/Views/UsageViewModel.h"
#include "App/Stores.h"
#include "Focus/Views/FocusViewModel.h"
#include "Focus/Views/StretchViewModel.h"
#include "Mascot/Views/MascotStageViewModel.h"
#include "Mascot/Views/MascotViewModel.h"
#include "Notch/Views/NotchStage.h"
#include "Notch/Views/NotchViewModel.h"
#include "Theme/Appearance.h"

class QQuickView;

namespace kippo {

/// What the panel's window shows: the notch's state and the view models over it.
struct Panel {
    /// What is passed must outlive the panel.
    Panel(Stores& stores, Scheduler& scheduler, UserDefaults& defaults, DesktopLook& look);

    /// Fills `view`; the panel must outlive what the view shows.
    void load(QQuickView& view);

    NotchModel model;
    NotchStage stage;
    NotchViewModel notch{model};
    AgentsViewModel agents;
    LeftBehindViewModel leftBehind;
    UsageViewModel usage;
    FocusViewModel focus;
    StretchViewModel stretch;
    MascotViewModel mascot;
    MascotStageViewModel mascotStage;
    Appearance appearance;
};

} // namespace kippo
