#include "Fakes/FakeFullScreenWatcher.h"
#include "NotchFixture.h"

namespace kippo {

using NotchControllerTest = NotchFixture;

TEST_F(NotchControllerTest, OpensWhereThePointerRestsAndClosesWhenItHasLeft) {
    pointer.moveTo(onNotch);
    EXPECT_TRUE(model.fields().isHovering);
    scheduler.advance(Seconds{0.06});
    pointer.moveTo(Point{970, 0}); // moving about inside, up to the topmost row, does not put it off
    scheduler.advance(moment);
    EXPECT_EQ(mode(), Mode::expanded);
    EXPECT_FALSE(model.fields().isHovering);
    EXPECT_EQ(window.shape.width, 664);
    EXPECT_TRUE(pointer.isFollowing);

    pointer.moveTo(away);
    scheduler.advance(Seconds{0.19});
    pointer.moveTo(Point{300, 701});
    EXPECT_EQ(mode(), Mode::expanded);
    scheduler.advance(moment);
    EXPECT_EQ(mode(), Mode::collapsed);
    EXPECT_EQ(window.shape.width, 176);
    EXPECT_FALSE(pointer.isFollowing);
}

TEST_F(NotchControllerTest, APassingPointerNeitherOpensNorCloses) {
    pointer.moveTo(onNotch);
    scheduler.advance(Seconds{0.05});
    pointer.moveTo(away);
    scheduler.advance(Seconds{1});
    EXPECT_EQ(mode(), Mode::collapsed);

    hover();
    pointer.moveTo(away);
    scheduler.advance(Seconds{0.15});
    pointer.moveTo(onNotch);
    scheduler.advance(Seconds{1});
    EXPECT_EQ(mode(), Mode::expanded);
}

TEST_F(NotchControllerTest, AClosedNotchUnderThePointerWaitsUntilThePointerHasLeft) {
    hover();
    notch.collapse();
    scheduler.advance(Seconds{1});
    pointer.moveTo(Point{965, 6});
    scheduler.advance(Seconds{1});
    EXPECT_EQ(mode(), Mode::collapsed);
    EXPECT_FALSE(model.fields().isHovering);

    pointer.moveTo(away);
    hover();
    EXPECT_EQ(mode(), Mode::expanded);
    pointer.moveTo(std::nullopt); // the system has lost it
    scheduler.advance(Seconds{0.3});
    EXPECT_EQ(mode(), Mode::collapsed);
    EXPECT_EQ(scheduler.pendingCount(), 0U) << "nothing waits while nothing goes on";

    defaults.set("openOnHover", false);
    hover();
    EXPECT_TRUE(model.fields().isHovering);
    EXPECT_EQ(mode(), Mode::collapsed);
}

TEST_F(NotchControllerTest, StaysOpenForAReasonAndClosesWhenTheReasonIsGone) {
    for (const auto set : {&NotchController::setPinned, &NotchController::setEditingNote, &NotchController::setDragging,
                           &NotchController::setEditingHome}) {
        pointer.moveTo(away);
        hover();
        pointer.press();
        (notch.*set)(true);
        pointer.moveTo(away);
        scheduler.advance(Seconds{5});
        EXPECT_EQ(mode(), Mode::expanded);
        (notch.*set)(false);
        scheduler.advance(Seconds{0.3});
        EXPECT_EQ(mode(), Mode::collapsed);
        pointer.release();
    }
    pointer.moveTo(away);
    hover();
    pointer.press();
    notch.setDragging(true);
    pointer.release();
    pointer.moveTo(away);
    EXPECT_FALSE(model.fields().isDragging) << "a drag ends where the button was let go";
}

TEST_F(NotchControllerTest, AClickElsewhereClosesUnlessPinned) {
    notch.expand(NotchTab::agents, true);
    EXPECT_TRUE(window.hasKeyboard);
    scheduler.advance(Seconds{5});
    EXPECT_EQ(mode(), Mode::expanded) << "opened from the keyboard, the pointer does not matter";
    notch.setPinned(true);
    pointer.press();
    EXPECT_EQ(mode(), Mode::expanded);
    notch.setPinned(false);
    pointer.moveTo(Point{960, 100});
    pointer.press();
    EXPECT_EQ(mode(), Mode::expanded) << "a click inside";
    pointer.moveTo(away);
    pointer.press();
    EXPECT_EQ(mode(), Mode::collapsed);
    EXPECT_FALSE(window.hasKeyboard);

    notch.expand(NotchTab::agents);
    EXPECT_FALSE(window.hasKeyboard);
    scheduler.advance(Seconds{0.3});
    EXPECT_EQ(mode(), Mode::collapsed) << "closing forgets how it was opened before";
}

TEST_F(NotchControllerTest, ClosingClearsWhatBelongsToTheOpenPanel) {
    notch.expand(NotchTab::notes, true);
    EXPECT_EQ(model.fields().noteFocusRequest, 1);
    EXPECT_TRUE(model.fields().wantsNoteFocus);
    notch.setEditingNote(true);
    EXPECT_TRUE(window.hasKeyboard);
    EXPECT_FALSE(model.fields().wantsNoteFocus);
    notch.setEditingNote(false);
    EXPECT_TRUE(window.hasKeyboard) << "the page keys go on working";
    notch.setPinned(true);
    notch.collapse();
    EXPECT_FALSE(window.hasKeyboard);
    EXPECT_FALSE(notch.staysOpen());
    EXPECT_FALSE(model.fields().isEditingNote || model.fields().isPinned);
}

TEST_F(NotchControllerTest, TheHotKeyTogglesItsPage) {
    notch.toggle(NotchTab::agents);
    EXPECT_EQ(model.fields().tab, NotchTab::agents);
    notch.toggle(NotchTab::clipboard);
    EXPECT_EQ(mode(), Mode::expanded) << "another page's key turns to that page";
    EXPECT_EQ(model.fields().tab, NotchTab::clipboard);
    notch.toggle(NotchTab::clipboard);
    EXPECT_EQ(mode(), Mode::collapsed);
}

TEST_F(NotchControllerTest, OpensOnThePageThatFits) {
    using enum NotchTab;
    struct Case {
        std::optional<LiveActivity> live;
        NotchTab before;
        std::optional<NotchTab> asked;
        std::vector<const char*> switchedOff;
        NotchTab expected;
    };
    const LiveActivity agentsLive = oneWorking();
    const std::vector<Case> cases{
        {agentsLive, clipboard, {}, {}, agents},
        {SleepingActivity{}, clipboard, {}, {}, focus},
        {FocusActivity{}, clipboard, {}, {}, focus},
        {SleepingActivity{}, clipboard, {}, {"showFocusTab"}, agents},
        {{}, clipboard, {}, {}, clipboard},
        {{}, music, {}, {"showMusicTab"}, home},
        {{}, music, {}, {"showMusicTab", "showHomeTab"}, agents},
        {agentsLive, clipboard, notes, {}, notes},
        {agentsLive, clipboard, revenue, {"showRevenueTab"}, agents},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases.data());
        NotchModel::Fields fields;
        fields.tab = c.before;
        model.set(fields);
        notch.setLive(c.live, {});
        defaults.values.clear();
        for (const char* key : c.switchedOff) {
            defaults.values.insert_or_assign(key, false);
        }
        notch.expand(c.asked);
        EXPECT_EQ(model.fields().tab, c.expected);
        notch.collapse();
    }
}

TEST_F(NotchControllerTest, APageThatIsSwitchedOffWhileItShowsGivesWay) {
    notch.expand(NotchTab::music);
    defaults.set("showMusicTab", false);
    EXPECT_EQ(model.fields().tab, NotchTab::agents);
    notch.show(NotchTab::music);
    EXPECT_EQ(model.fields().tab, NotchTab::agents);
    notch.show(NotchTab::notes);
    EXPECT_EQ(model.fields().tab, NotchTab::notes);
}

TEST_F(NotchControllerTest, TurnsThroughThePagesThatAreThere) {
    notch.expand(NotchTab::agents, true);
    EXPECT_EQ(model.fields().pages, (std::vector{NotchTab::agents, NotchTab::focus}));
    notch.turn(1);
    EXPECT_EQ(model.fields().tab, NotchTab::focus);
    notch.turn(1);
    EXPECT_EQ(model.fields().tab, NotchTab::agents);
    notch.turn(-1);
    EXPECT_EQ(model.fields().tab, NotchTab::focus);
    notch.show(NotchTab::notes);
    EXPECT_EQ(model.page(), NotchTab::agents) << "a page that is not built yet";
    notch.turn(1);
    EXPECT_EQ(model.fields().tab, NotchTab::focus);
    defaults.set("showFocusTab", false);
    notch.turn(1);
    EXPECT_EQ(model.fields().pages, std::vector{NotchTab::agents});
    EXPECT_EQ(model.fields().tab, NotchTab::agents);
}

TEST_F(NotchControllerTest, ANewerPeekReplacesTheOldAndRunsItsOwnTime) {
    notch.peek(session(AgentStatus::done()), Seconds{2.5});
    EXPECT_EQ(mode(), Mode::peek);
    scheduler.advance(Seconds{2});
    notch.peek(session(AgentStatus::needsYou("Approve?")), Seconds{4});
    EXPECT_EQ(window.shape.height, 24 + 40) << "who waits gets the second line";
    scheduler.advance(Seconds{3.9});
    EXPECT_EQ(mode(), Mode::peek);
    EXPECT_TRUE(std::get<AgentSession>(*model.fields().peek).status.isNeedsYou());
    scheduler.advance(Seconds{0.2});
    EXPECT_EQ(mode(), Mode::collapsed);
}

TEST_F(NotchControllerTest, OpeningFromAPeekEndsItForGood) {
    notch.peek(session(AgentStatus::done()), Seconds{2.5});
    pointer.moveTo(Point{960 + 150, 5}); // inside the announcement, beside the resting notch
    scheduler.advance(Seconds{0.08});
    EXPECT_EQ(mode(), Mode::expanded);
    notch.peek(session(AgentStatus::done()), Seconds{2.5});
    EXPECT_FALSE(model.fields().peek) << "nothing is announced over the open page";
    notch.collapse();
    EXPECT_EQ(mode(), Mode::collapsed);
    pointer.moveTo(away);
    notch.peek(session(AgentStatus::done()), Seconds{9});
    scheduler.advance(Seconds{3});
    EXPECT_EQ(mode(), Mode::peek) << "the first announcement's end must not end the second";
}

TEST_F(NotchControllerTest, LiveActivitySetsTheRestingMode) {
    notch.setLive(oneWorking(), {});
    EXPECT_EQ(mode(), Mode::live);
    EXPECT_EQ(window.shape.width, 176 + 92 + 12);
    notch.peek(session(AgentStatus::done()), Seconds{1});
    notch.setLive({}, {});
    EXPECT_EQ(mode(), Mode::peek) << "an announcement is not cut short";
    scheduler.advance(Seconds{1.1});
    EXPECT_EQ(mode(), Mode::collapsed);

    notch.expand();
    notch.setLive(oneWorking(), SleepingActivity{});
    EXPECT_EQ(mode(), Mode::expanded);
    notch.collapse();
    EXPECT_EQ(mode(), Mode::live);
    notch.setLive({}, {});
    EXPECT_EQ(mode(), Mode::collapsed);
}

TEST_F(NotchControllerTest, AWingThatShrinksFromUnderThePointerDoesNotOpen) {
    notch.setLive(oneWorking(), {});
    pointer.moveTo(Point{960 + 120, 5});
    notch.setLive({}, {});
    scheduler.advance(Seconds{1});
    EXPECT_EQ(mode(), Mode::collapsed);
}

TEST_F(NotchControllerTest, AHiddenNotchNeverOpens) {
    notch.expand(NotchTab::agents, true);
    notch.setHidden(true);
    EXPECT_EQ(mode(), Mode::collapsed);
    EXPECT_FALSE(window.isVisible);
    notch.expand();
    notch.toggle(NotchTab::agents);
    notch.peek(session(AgentStatus::done()), Seconds{1});
    pointer.moveTo(away);
    hover();
    EXPECT_EQ(mode(), Mode::collapsed);
    pointer.moveTo(away);
    notch.setHidden(false);
    EXPECT_TRUE(window.isVisible);
    hover();
    EXPECT_EQ(mode(), Mode::expanded);
}

namespace {

MascotMessage question() {
    MascotMessage message;
    message.id = 7;
    message.text = "Are you working?";
    return message;
}

} // namespace

TEST_F(NotchControllerTest, AMessageWaitsForThePersonAndGoesOnceLeft) {
    const Rect place{300, 32, 150, 80}; // in the panel's window; on the desktop its left edge is at 584 + 300
    const Point onMessage{900, 50};

    notch.showMascot(question());
    notch.setMascotPlace(place);
    pointer.moveTo(away);
    scheduler.advance(Seconds{15.9});
    EXPECT_TRUE(speaks()) << "a pointer that is busy elsewhere does not shorten it";
    scheduler.advance(Seconds{0.2});
    EXPECT_FALSE(speaks());

    notch.showMascot(question());
    notch.setMascotPlace(place);
    pointer.moveTo(onMessage);
    EXPECT_EQ(mode(), Mode::collapsed);
    scheduler.advance(Seconds{60});
    EXPECT_TRUE(speaks()) << "put off by four seconds, over and over";
    pointer.moveTo(away);
    scheduler.advance(Seconds{5.9});
    EXPECT_TRUE(speaks());
    scheduler.advance(Seconds{0.2});
    EXPECT_FALSE(speaks());

    notch.showMascot(question());
    notch.focusMascot();
    EXPECT_TRUE(window.hasKeyboard);
    notch.setMascotAttended(true); // by the keyboard
    pointer.moveTo(away);
    scheduler.advance(Seconds{40});
    EXPECT_TRUE(speaks());
    notch.hideMascot(); // answered
    EXPECT_FALSE(speaks() || window.hasKeyboard);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

TEST_F(NotchControllerTest, AMessageNeedsAClosedNotchThatIsThere) {
    notch.showMascot(question());
    notch.expand(NotchTab::focus);
    EXPECT_FALSE(speaks());
    notch.showMascot(question());
    EXPECT_FALSE(speaks());
    notch.collapse();
    notch.showMascot(question());
    notch.setHidden(true);
    notch.setHidden(false);
    EXPECT_FALSE(speaks());
}

TEST_F(NotchControllerTest, StepsAsideForAFilmOnItsScreenWhereTheSettingSaysSo) {
    FakeFullScreenWatcher films;
    notch.follow(films);
    films.fill(Point{0, 0});
    EXPECT_TRUE(window.isVisible) << "it stays unless told otherwise";
    defaults.set("fullScreen", "stepAside");
    EXPECT_FALSE(window.isVisible);
    hover();
    notch.peek(session(AgentStatus::done()), Seconds{2});
    notch.showMascot(question());
    EXPECT_EQ(mode(), Mode::collapsed);
    EXPECT_FALSE(model.fields().mascot || window.isVisible);

    pointer.moveTo(away);
    notch.toggle(NotchTab::agents);
    EXPECT_TRUE(window.isVisible) << "whoever presses its key wants it";
    notch.collapse();
    EXPECT_FALSE(window.isVisible);
    films.fill(Point{1920, 0});
    EXPECT_TRUE(window.isVisible) << "another screen's film";
    films.fill(Point{0, 0});
    films.fill({});
    EXPECT_TRUE(window.isVisible);
}

TEST_F(NotchControllerTest, ObserversHearOfChangesOnly) {
    int heard = 0;
    const Subscription subscription = model.observe([&] { ++heard; });
    pointer.moveTo(away);
    notch.layout();
    notch.setLive({}, {});
    EXPECT_EQ(heard, 0);
    pointer.moveTo(onNotch);
    EXPECT_EQ(heard, 1);
}

} // namespace kippo
