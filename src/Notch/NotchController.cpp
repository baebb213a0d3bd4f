#include "Notch/NotchController.h"

#include <algorithm>
#include <cmath>

namespace kippo {

namespace {

constexpr Seconds hoverBeforeOpening{0.07};
constexpr Seconds absenceBeforeClosing{0.2};

constexpr Seconds mascotTime{16};
constexpr Seconds mascotTimeOnceLeft{6};
constexpr Seconds mascotRespite{4};

constexpr double narrowestCutout = 40;
constexpr double widestCutout = 480;

bool isEnabled(NotchTab tab, const UserDefaults& defaults) {
    return std::ranges::count(enabledTabs(defaults), tab) > 0;
}

} // namespace

NotchController::NotchController(NotchModel& model, Scheduler& scheduler, UserDefaults& defaults, Screens& screens,
                                 Pointer& pointer, PanelWindow& window)
    : model_(model), scheduler_(scheduler), defaults_(defaults), screens_(screens), pointer_(pointer), window_(window) {
    screensChanged_ = screens_.observe([this] { layout(); });
    defaultsChanged_ = defaults_.observe([this] { settingsChanged(); });
    moves_ = pointer_.observeMoves([this] { refreshPointer(); });
    presses_ = pointer_.observePresses([this] { pressed(); });
    readPages();
    layout();
    updateVisible();
}

/// Applies `change` to a copy of the state, publishes it, and moves the window's shape accordingly.
template <typename Change> void NotchController::change(Change change) {
    NotchModel::Fields fields = model_.fields();
    change(fields);
    model_.set(std::move(fields));
    showShape();
    updateVisible();
}

void NotchController::showShape() {
    const NotchModel::Fields& fields = model_.fields();
    const bool tall = fields.peek && NotchMetrics::isTallPeek(*fields.peek);
    shapes_ = NotchMetrics::shapes(fields.notchSize, tall, contentHeight_);
    window_.show(shapes_, fields.mode);
}

// Opening and closing

void NotchController::expand(std::optional<NotchTab> tab, bool fromKeyboard) {
    if (isHidden_) {
        return;
    }
    cancelPending();
    peekWork_.cancel();
    hideMascot();
    NotchTab chosen = tab.value_or(tabThatFits());
    if (!isEnabled(chosen, defaults_)) {
        chosen = NotchTab::agents;
    }
    openedFromKeyboard_ = openedFromKeyboard_ || fromKeyboard;
    change([&](NotchModel::Fields& fields) {
        fields.tab = chosen;
        fields.peek.reset();
        fields.mode = NotchModel::Mode::expanded;
        if (fromKeyboard && chosen == NotchTab::notes) {
            fields.wantsNoteFocus = true;
            ++fields.noteFocusRequest;
        }
    });
    pointer_.setFollowing(true);
    updateKeyboard();
    refreshPointer();
}

NotchTab NotchController::tabThatFits() const {
    const NotchModel::Fields& fields = model_.fields();
    if (fields.live) {
        return std::holds_alternative<AgentsActivity>(*fields.live) ? NotchTab::agents : NotchTab::focus;
    }
    return isEnabled(fields.tab, defaults_) ? fields.tab : NotchTab::home;
}

void NotchController::collapse() {
    cancelPending();
    openedFromKeyboard_ = false;
    change([this](NotchModel::Fields& fields) {
        fields.isPinned = fields.isEditingNote = fields.isDragging = fields.isEditingHome = false;
        fields.wantsNoteFocus = false;
        fields.mode = model_.restingMode();
    });
    updateKeyboard();
    pointer_.setFollowing(false);
    hoverSuppressed_ = isPointerInside();
    refreshPointer();
}

void NotchController::toggle(NotchTab tab) {
    const NotchModel::Fields& fields = model_.fields();
    if (fields.mode == NotchModel::Mode::expanded && fields.tab == tab) {
        collapse();
    } else {
        expand(tab, true);
    }
}

void NotchController::show(NotchTab tab) {
    if (isEnabled(tab, defaults_)) {
        change([tab](NotchModel::Fields& fields) { fields.tab = tab; });
    }
}

void NotchController::turn(int steps) {
    const std::vector<NotchTab>& pages = model_.fields().pages;
    const auto now = std::ranges::find(pages, model_.page());
    if (now != pages.end()) {
        const auto count = static_cast<int>(pages.size());
        const auto next = (static_cast<int>(now - pages.begin()) + steps % count + count) % count;
        show(pages[static_cast<std::size_t>(next)]);
    }
}

void NotchController::setHidden(bool hidden) {
    if (hidden && mode() == NotchModel::Mode::expanded) {
        collapse();
    }
    isHidden_ = hidden;
    if (hidden) {
        hideMascot();
    }
    updateVisible();
    refreshPointer();
}

// Announcements and live activities

void NotchController::peek(PeekContent content, Seconds duration) {
    if (isAway() || mode() == NotchModel::Mode::expanded) {
        return;
    }
    change([&](NotchModel::Fields& fields) {
        fields.peek = std::move(content);
        fields.mode = NotchModel::Mode::peek;
    });
    peekWork_ = scheduler_.after(duration, [this] { endPeek(); });
    refreshPointer();
}

void NotchController::endPeek() {
    if (mode() != NotchModel::Mode::peek) {
        return;
    }
    // The content stays, so that it can be seen to fade while the shape goes back.
    change([this](NotchModel::Fields& fields) { fields.mode = model_.restingMode(); });
    refreshPointer();
}

void NotchController::setLive(std::optional<LiveActivity> primary, std::optional<LiveActivity> secondary) {
    change([&](NotchModel::Fields& fields) {
        fields.live = std::move(primary);
        fields.secondaryLive = std::move(secondary);
        if (fields.mode == NotchModel::Mode::collapsed || fields.mode == NotchModel::Mode::live) {
            fields.mode = fields.live ? NotchModel::Mode::live : NotchModel::Mode::collapsed;
        }
    });
    refreshPointer();
}

// The mascot's messages

void NotchController::showMascot(const MascotMessage& message) {
    if (isAway() || mode() == NotchModel::Mode::expanded) {
        return;
    }
    change([&](NotchModel::Fields& fields) { fields.mascot = message; });
    hideMascotAfter(mascotTime);
    refreshPointer();
}

void NotchController::hideMascot() {
    mascotWork_.cancel();
    isMascotWatched_ = isMascotAttended_ = mascotHasKeyboard_ = false;
    mascotPlace_.reset();
    change([](NotchModel::Fields& fields) { fields.mascot.reset(); });
    updateKeyboard();
}

void NotchController::hideMascotAfter(Seconds delay) {
    mascotWork_ = scheduler_.after(delay, [this] { mascotIsDue(); });
}

void NotchController::mascotIsDue() {
    if (isMascotAttended_) {
        hideMascotAfter(mascotRespite);
    } else {
        hideMascot();
    }
}

void NotchController::setMascotAttended(bool attended) {
    isMascotWatched_ = attended && model_.fields().mascot;
    followMascotAttention();
}

void NotchController::setMascotPlace(std::optional<Rect> place) {
    mascotPlace_ = place;
    followMascotAttention();
}

bool NotchController::isPointerOverMascot() const {
    const auto position = mascotPlace_ ? pointer_.position() : std::nullopt;
    if (!position) {
        return false;
    }
    const double x = position->x - frame_.x - mascotPlace_->x;
    const double y = position->y - frame_.y - mascotPlace_->y;
    return x >= 0 && y >= 0 && x < mascotPlace_->width && y < mascotPlace_->height;
}

/// A message that nobody comes near has its whole time; one that the person leaves has been read.
void NotchController::followMascotAttention() {
    const bool attended = model_.fields().mascot && (isMascotWatched_ || isPointerOverMascot());
    if (isMascotAttended_ && !attended && model_.fields().mascot) {
        hideMascotAfter(mascotTimeOnceLeft);
    }
    isMascotAttended_ = attended;
}

void NotchController::focusMascot() {
    if (model_.fields().mascot) {
        mascotHasKeyboard_ = true;
        updateKeyboard();
    }
}

// What keeps the panel open

bool NotchController::staysOpen() const {
    const NotchModel::Fields& fields = model_.fields();
    return fields.isPinned || fields.isEditingNote || fields.isDragging || fields.isEditingHome || openedFromKeyboard_;
}

void NotchController::setPinned(bool pinned) {
    change([=](NotchModel::Fields& fields) { fields.isPinned = pinned; });
    refreshPointer();
}

void NotchController::setEditingNote(bool editing) {
    change([=](NotchModel::Fields& fields) {
        fields.isEditingNote = editing;
        fields.wantsNoteFocus = false;
    });
    updateKeyboard();
    refreshPointer();
}

/// The panel has the keyboard for typing, and wherever the person came by the keyboard.
void NotchController::updateKeyboard() {
    window_.setTakesKeyboard(openedFromKeyboard_ || model_.fields().isEditingNote || mascotHasKeyboard_);
}

void NotchController::setDragging(bool dragging) {
    change([=](NotchModel::Fields& fields) { fields.isDragging = dragging; });
    refreshPointer();
}

void NotchController::setEditingHome(bool editing) {
    change([=](NotchModel::Fields& fields) { fields.isEditingHome = editing; });
    refreshPointer();
}

// The screen

void NotchController::layout() {
    const std::vector<Screen> screens = screens_.screens();
    const Screen* screen = chooseScreen(screens, defaults_.get<std::string>("display", "builtIn"));
    if (!screen) {
        return; // every screen is unplugged: be where we were when one comes back
    }
    adopt(*screen, screen == chooseScreen(screens, "builtIn"));
    updateStepsAside();
    refreshPointer();
}

/// `ownsCutout`: the cut-out that the settings describe is in this screen.
void NotchController::adopt(const Screen& screen, bool ownsCutout) {
    Size notch{0, screen.topInset};
    if (screen.notch) {
        notch = *screen.notch;
    } else if (ownsCutout) {
        const double height = defaults_.get<double>("cutoutHeight");
        notch = {defaults_.get<double>("cutoutWidth"), height > 0 ? height : screen.topInset};
    }
    const bool hasNotch = notch.width > 0;
    notch.width = hasNotch ? std::clamp(notch.width, narrowestCutout, widestCutout) : NotchMetrics::drawnCutoutWidth;
    notch.height = std::clamp(notch.height, NotchMetrics::minimumNotchHeight, NotchMetrics::maximumNotchHeight);

    contentHeight_ = NotchMetrics::contentHeight(defaults_);
    screenFrame_ = screen.frame;
    const Size panel = NotchMetrics::panelSize(notch, contentHeight_);
    // Whole pixels, so that the window's middle and the notch's are the same.
    const double left = std::floor(screen.frame.x + (screen.frame.width - panel.width) / 2);
    centerX_ = left + panel.width / 2;
    frame_ = {left, screen.frame.y, panel.width, panel.height};
    window_.place(frame_);
    change([&](NotchModel::Fields& fields) {
        fields.notchSize = notch;
        fields.hasNotch = hasNotch;
    });
}

void NotchController::settingsChanged() {
    if (!isEnabled(model_.fields().tab, defaults_)) {
        change([](NotchModel::Fields& fields) { fields.tab = NotchTab::agents; });
    }
    readPages();
    layout();
}

void NotchController::readPages() {
    std::vector<NotchTab> pages = enabledTabs(defaults_);
    std::erase_if(pages, [](NotchTab tab) { return !hasPage(tab); });
    change([&](NotchModel::Fields& fields) { fields.pages = std::move(pages); });
}

// Full-screen windows

void NotchController::follow(FullScreenWatcher& watcher) {
    fullScreen_ = &watcher;
    fullScreenChanged_ = watcher.observe([this] {
        updateStepsAside();
        refreshPointer();
    });
    updateStepsAside();
}

bool NotchController::isScreenFilled() const {
    return fullScreen_ && fullScreen_->fillsScreenAt({screenFrame_.x, screenFrame_.y});
}

void NotchController::updateStepsAside() {
    stepsAside_ = defaults_.get<std::string>("fullScreen") == "stepAside" && isScreenFilled();
    if (stepsAside_ && model_.fields().mascot) {
        hideMascot();
    }
    updateVisible();
}

/// Whoever asks for the panel by a key or from the menu gets it, over a film, too.
void NotchController::updateVisible() {
    const bool visible = !isHidden_ && (!stepsAside_ || mode() == NotchModel::Mode::expanded);
    if (visible != isVisible_) {
        isVisible_ = visible;
        window_.setVisible(visible);
    }
}

// The pointer

bool NotchController::isPointerInside() const {
    const auto position = pointer_.position();
    return position && NotchOutline{shapes_[mode()]}.contains({position->x - centerX_, position->y - frame_.y});
}

void NotchController::refreshPointer() {
    const bool inside = isPointerInside();
    const bool isExpanded = mode() == NotchModel::Mode::expanded;
    const bool isHovering = inside && !isExpanded && !hoverSuppressed_ && !isAway();
    const bool isDragging = model_.fields().isDragging && pointer_.isButtonPressed();
    if (isHovering != model_.fields().isHovering || isDragging != model_.fields().isDragging) {
        change([=](NotchModel::Fields& fields) {
            fields.isHovering = isHovering;
            fields.isDragging = isDragging;
        });
    }
    if (!inside) {
        hoverSuppressed_ = false;
    }
    if (isExpanded) {
        schedule(inside || staysOpen() ? Pending::none : Pending::closing);
    } else {
        const bool opens = isHovering && defaults_.get<bool>("openOnHover");
        schedule(opens ? Pending::opening : Pending::none);
    }
    followMascotAttention();
}

/// Makes `kind` the work that waits. Work of that kind that waits already keeps its time, or a pointer that never rests
/// would put it off for good.
void NotchController::schedule(Pending kind) {
    if (kind == pendingKind_) {
        return;
    }
    cancelPending();
    pendingKind_ = kind;
    if (kind != Pending::none) {
        const Seconds delay = kind == Pending::opening ? hoverBeforeOpening : absenceBeforeClosing;
        pending_ = scheduler_.after(delay, [this, kind] { pendingIsDue(kind); });
    }
}

void NotchController::cancelPending() {
    pending_.cancel();
    pendingKind_ = Pending::none;
}

void NotchController::pendingIsDue(Pending kind) {
    pendingKind_ = Pending::none;
    const bool inside = isPointerInside();
    if (kind == Pending::opening && inside && !isAway()) {
        expand();
    } else if (kind == Pending::closing && !inside && !staysOpen()) {
        collapse();
    }
}

void NotchController::pressed() {
    if (mode() == NotchModel::Mode::expanded && !model_.fields().isPinned && !isPointerInside()) {
        collapse();
    }
}

} // namespace kippo
