#include "Notch/Views/NotchViewModel.h"

#include "Samples.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace kippo {
namespace {

struct NotchViewModelTest : testing::Test {
    NotchModel model;
    NotchViewModel notch{model};

    template <typename Change> void change(Change change) {
        NotchModel::Fields fields = model.fields();
        change(fields);
        model.set(fields);
    }
    void showLive(const std::optional<LiveActivity>& live) {
        change([&](NotchModel::Fields& fields) { fields.live = live; });
    }
};

TEST_F(NotchViewModelTest, APeekStaysReadableWhileItFadesOut) {
    AgentSession session = sampleSession("a", AgentStatus::done());
    session.summary = "All tests pass";
    change([&](NotchModel::Fields& fields) { fields.peek = session; });
    EXPECT_EQ(notch.peekTitle(), "Claude Code");
    EXPECT_EQ(notch.peekWord(), "Done");
    EXPECT_EQ(notch.peekProject(), "atlas");
    change([](NotchModel::Fields& fields) { fields.peek.reset(); });
    EXPECT_EQ(notch.peekSentence(), "All tests pass");
}

TEST_F(NotchViewModelTest, AWingShowsAsManyLightsAsFit) {
    AgentsActivity activity;
    activity.working = 6;
    activity.lights.assign(6, {AgentKind::codex, AgentStatus::Case::working});
    activity.kind = AgentKind::codex;
    showLive(activity);
    EXPECT_EQ(notch.lights().size(), 3);
    EXPECT_TRUE(notch.liveIsOneKind());
    EXPECT_EQ(notch.liveKind(), AgentLook::Kind::Codex);
    EXPECT_EQ(notch.liveWorking(), 6);
    const QSignalSpy lights{&notch, &NotchViewModel::lightsChanged};
    change([](NotchModel::Fields& fields) { fields.isHovering = true; });
    EXPECT_EQ(lights.count(), 0) << "they are rebuilt only when they change";
}

TEST_F(NotchViewModelTest, WingsKeepTheirLastWordWhileTheyClose) {
    AgentsActivity activity;
    activity.needsYou = 1;
    activity.lights = {{AgentKind::codex, AgentStatus::Case::needsYou}};
    showLive(activity);
    showLive(std::nullopt);
    EXPECT_EQ(notch.liveNeedsYou(), 1);
    EXPECT_EQ(notch.wing(), NotchViewModel::Wing::AtWork);
    showLive(SleepingActivity{});
    EXPECT_EQ(notch.wing(), NotchViewModel::Wing::Asleep);
    showLive(FocusActivity{});
    EXPECT_EQ(notch.wing(), NotchViewModel::Wing::InFocus);
    change([&](NotchModel::Fields& fields) {
        fields.live = activity;
        fields.secondaryLive = FocusActivity{};
    });
    EXPECT_EQ(notch.wing(), NotchViewModel::Wing::AtWork);
    EXPECT_TRUE(notch.hasFocusBeside());
}

} // namespace
} // namespace kippo
