#include "App/DemoMachine.h"

#include "App/DemoSessions.h"

#include <algorithm>

namespace kippo {

namespace {

constexpr Seconds endingTime{1};
constexpr Seconds scanningTime{2.5};

} // namespace

DemoMachine::DemoMachine(Panel& panel, Scheduler& scheduler)
    : panel_(panel), scheduler_(scheduler), processes_(DemoSessions::leftRunning()) {
    LeftBehindViewModel& page = panel_.leftBehind;
    page.onStop = [this](Pid pid) {
        ending_ =
            scheduler_.after(endingTime, [this, pid] { end([pid](const ProcInfo& it) { return it.pid == pid; }); });
    };
    page.onStopAll = [this] {
        ending_ = scheduler_.after(endingTime, [this] { end([](const ProcInfo&) { return true; }); });
    };
    page.onHide = [this](const std::string& name) {
        end([&name](const ProcInfo& process) { return process.friendlyName() == name; });
    };
    page.onScan = [this] { scan(); };
    page.onTrash = [this](const Leftover& leftover) { trash(leftover); };
    page.onUndoTrash = [this] { undoTrash(); };
    panel_.usage.show(DemoSessions::week(), true, scheduler_.now());
    show();
}

template <typename Selects> void DemoMachine::end(Selects selects) {
    std::erase_if(processes_, [&selects](const DetachedProcess& process) { return selects(process.proc); });
    show();
}

void DemoMachine::scan() {
    leftovers_.isScanning = true;
    show();
    scanning_ = scheduler_.after(scanningTime, [this] {
        leftovers_ = {.found = DemoSessions::leftovers(), .hasScanned = true};
        show();
    });
}

void DemoMachine::trash(const Leftover& leftover) {
    std::erase(leftovers_.found, leftover);
    leftovers_.lastTrashed = leftover;
    show();
}

void DemoMachine::undoTrash() {
    if (leftovers_.lastTrashed) {
        leftovers_.found.push_back(*leftovers_.lastTrashed);
        std::ranges::sort(leftovers_.found, std::ranges::greater{}, &Leftover::sizeKB);
        leftovers_.lastTrashed.reset();
        show();
    }
}

void DemoMachine::show() {
    panel_.leftBehind.show(processes_);
    panel_.leftBehind.showLeftovers(leftovers_);
}

} // namespace kippo
