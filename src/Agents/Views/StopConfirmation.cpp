#include "Agents/Views/StopConfirmation.h"

#include <algorithm>

namespace kippo {

void StopConfirmation::click(Pid pid) {
    if (state(pid) == State::stopping) {
        return;
    }
    if (asking_ != pid) {
        asking_ = pid;
        withdrawal_ = scheduler_.after(patience, [this] { withdraw(); });
        changed();
        return;
    }
    asking_.reset();
    withdrawal_.cancel();
    stopping_.merge(pid == everything ? std::set{shown_} : std::set{pid});
    retry_ = scheduler_.after(stubborn, [this] {
        stopping_.clear();
        changed();
    });
    if (onStop) {
        onStop(pid);
    }
    changed();
}

StopConfirmation::State StopConfirmation::state(Pid pid) const {
    if (asking_ == pid) {
        return State::asking;
    }
    if (pid == everything) {
        return State::ready;
    }
    return stopping_.contains(pid) ? State::stopping : State::ready;
}

std::string_view StopConfirmation::label(Pid pid) const {
    switch (state(pid)) {
    case State::asking:
        return pid == everything ? "Click again to stop them" : "Click again to stop it";
    case State::stopping:
        return "Stopping…";
    case State::ready:
        break;
    }
    return pid == everything ? "Stop all" : "Stop this process";
}

void StopConfirmation::withdraw() {
    if (asking_) {
        asking_.reset();
        withdrawal_.cancel();
        changed();
    }
}

void StopConfirmation::follow(const std::set<Pid>& shown) {
    const bool isStale =
        asking_ && (*asking_ == everything ? !std::ranges::includes(shown_, shown) : !shown.contains(*asking_));
    shown_ = shown;
    std::erase_if(stopping_, [&shown](Pid pid) { return !shown.contains(pid); });
    if (isStale) {
        asking_.reset();
        withdrawal_.cancel();
    }
}

void StopConfirmation::changed() const {
    if (onChange) {
        onChange();
    }
}

} // namespace kippo
