#pragma once

#include "App/Panel.h"

namespace kippo {

/// What the demo's sample machine has besides sessions: a week's usage, processes left running and leftover folders.
/// The open page's actions on them work, on the samples alone.
class DemoMachine {
public:
    /// Fills `panel`, which must outlive the machine, and answers to it from now on.
    DemoMachine(Panel& panel, Scheduler& scheduler);

private:
    template <typename Selects> void end(Selects selects);
    void scan();
    void trash(const Leftover& leftover);
    void undoTrash();
    void show();

    Panel& panel_;
    Scheduler& scheduler_;
    std::vector<DetachedProcess> processes_;
    LeftBehindViewModel::Leftovers leftovers_;
    Timer ending_;
    Timer scanning_;
};

} // namespace kippo
