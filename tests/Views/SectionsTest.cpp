#include "Agents/Views/LeftBehindViewModel.h"
#include "Agents/Views/SessionDetail.h"
#include "Agents/Views/UsageViewModel.h"
#include "Fakes/FakeScheduler.h"
#include "Samples.h"

#include <QSignalSpy>
#include <gmock/gmock.h>

namespace kippo {
namespace {

ProcInfo process(Pid pid, std::int64_t rssKB) {
    return {.pid = pid, .rssKB = rssKB, .command = "tool" + std::to_string(pid)};
}

TEST(SessionDetailTest, EveryPortShowsOnceAndTheHeaviestProcessesFirst) {
    AgentSession session = sampleSession("a", AgentStatus::working());
    session.ports = {80, 3000, 3001, 3002, 3003, 3004, 9000};
    for (Pid pid = 1; pid <= 8; ++pid) {
        session.children.push_back(process(pid, std::int64_t{pid} * 1024));
    }
    session.childPorts = {{2, {3000, 3001, 3002, 3003, 3004}}};
    SessionDetail detail;
    detail.show(session);
    EXPECT_EQ(column(*detail.processes(), "name"), (QStringList{"tool2", "tool8", "tool7", "tool6", "tool5", "tool4"}));
    EXPECT_EQ(column(*detail.processes(), "morePorts")[0], "+1");
    EXPECT_EQ(detail.property("moreProcesses"), "and 2 more, 4 MB");
    EXPECT_EQ(detail.property("ports").value<QList<int>>(), (QList<int>{80, 9000}));

    // A chip that the pointer is on must outlive a new measurement.
    const QSignalSpy ports{&detail, &SessionDetail::portsChanged};
    const QSignalSpy rows{detail.processes(), &QAbstractItemModel::rowsInserted};
    session.children[1].rssKB += 4096;
    detail.show(session);
    EXPECT_EQ(ports.count() + rows.count(), 0);
}

TEST(SessionDetailTest, TellsOnlyWhatThereIs) {
    AgentSession session = sampleSession("a", AgentStatus::done());
    session.cwd.reset();
    session.prompt = std::string(5000, 'x');
    session.activity = AgentActivity{AgentActivity::Kind::edit, "Edit", "src/a.cpp", true, session.lastEvent};
    SessionDetail detail;
    detail.show(session);
    for (const char* name : {"reply", "folder", "usage", "moreProcesses"}) {
        EXPECT_EQ(detail.property(name), "") << name;
    }
    EXPECT_FALSE(detail.property("canBeStopped").toBool());
    EXPECT_TRUE(detail.property("request").toString().endsWith(u"x…"));
    EXPECT_EQ(detail.property("activityLabel"), "Last");
    EXPECT_EQ(detail.property("activity"), "Edited src/a.cpp");
    EXPECT_EQ(usageText(0, 0), "");
    EXPECT_EQ(usageText(1'240'000, 3.405), "1.2M tokens, $3.41");
    EXPECT_EQ(usageText(12, 0.0004), "12 tokens, under $0.01");
    EXPECT_EQ(usageText(12, 12'345'678.9), "12 tokens, $12,345,678.90");
}

struct LeftBehindTest : testing::Test {
    FakeScheduler scheduler;
    LeftBehindViewModel leftBehind{scheduler};

    static Leftover folder(const std::string& path, const std::string& project, std::int64_t sizeKB = 2048) {
        return {path, sizeKB, project};
    }
};

TEST_F(LeftBehindTest, LeftoversAreNamedFromTheirProject) {
    leftBehind.showLeftovers(
        {.found = {folder("/w/shop/shop/node_modules", "shop"), folder("/w/shop/.claude/worktrees", "shop"),
                   folder("/h/.npm/_cacache", "Caches"), folder("/x", "elsewhere")},
         .hasScanned = true});
    EXPECT_EQ(column(*leftBehind.leftovers(), "name"),
              (QStringList{"node_modules", ".claude/worktrees", ".npm/_cacache", "/x"}));
    EXPECT_EQ(leftBehind.leftoversText(), "4 folders, 8 MB");
}

TEST_F(LeftBehindTest, SaysHowFarTheScanIs) {
    EXPECT_EQ(leftBehind.scanLabel(), "Scan");
    EXPECT_EQ(leftBehind.emptyText(), "Not scanned yet.");
    leftBehind.showLeftovers({.isScanning = true});
    EXPECT_EQ(leftBehind.scanLabel(), "Scanning…");
    leftBehind.showLeftovers({.hasScanned = true});
    EXPECT_EQ(leftBehind.scanLabel(), "Scan again");
    EXPECT_EQ(leftBehind.emptyText(), "Nothing big found.");
}

TEST_F(LeftBehindTest, AFolderIsMovedOnceAndStaysWhenThatFails) {
    int moves = 0;
    leftBehind.onTrash = [&moves](const Leftover&) { ++moves; };
    LeftBehindViewModel::Leftovers known{.found = {folder("/w/a/dist", "a")}, .hasScanned = true};
    leftBehind.showLeftovers(known);
    leftBehind.trash("/w/a/dist");
    leftBehind.showLeftovers(known);
    leftBehind.trash("/w/a/dist");
    leftBehind.trash("/home");
    EXPECT_EQ(moves, 1);
    EXPECT_EQ(column(*leftBehind.leftovers(), "isMoving"), QStringList{"true"});

    known.trashError = "No room.";
    leftBehind.showLeftovers(known);
    EXPECT_EQ(column(*leftBehind.leftovers(), "isMoving"), QStringList{"false"});
    EXPECT_EQ(leftBehind.errorText(), "No room.");

    leftBehind.showLeftovers({.hasScanned = true, .lastTrashed = folder("/w/a/dist", "a")});
    EXPECT_EQ(leftBehind.undoText(), "Moved dist of a to the Trash.");
}

TEST_F(LeftBehindTest, HidesByName) {
    std::vector<std::string> hidden;
    leftBehind.onHide = [&hidden](const std::string& name) { hidden.push_back(name); };
    leftBehind.show(std::vector<DetachedProcess>{{process(1, 1), {}, {}}, {process(2, 1), {}, {}}});
    leftBehind.hide(2);
    leftBehind.hide(7);
    leftBehind.hideAll();
    EXPECT_EQ(hidden, (std::vector<std::string>{"tool2", "tool1", "tool2"}));
}

TEST(UsageViewModelTest, KnowsUnknownFromNothing) {
    UsageViewModel usage;
    EXPECT_EQ(usage.todayCost(), "–");
    EXPECT_EQ(usage.statusText(), "");
    EXPECT_EQ(usage.todayTokens(), "Counting the week's tokens…");
    usage.show({}, true, dateFromUnix(1795226400));
    EXPECT_EQ(usage.todayCost(), "$0.00");
    EXPECT_EQ(usage.fiveHours(), "0 tokens, $0.00 in the last 5 hours");
    EXPECT_EQ(usage.statusText(), "Nothing used yet today.");
    EXPECT_EQ(column(*usage.week(), "share"), (QStringList{"0", "0", "0", "0", "0", "0", "0"}));
}

TEST(UsageViewModelTest, TheWeekEndsTodayAndBarsFollowCostOrElseTokens) {
    UsageScanner::Report report;
    report.week[6] = {100, 2};
    report.week[5] = {1000, 1};
    report.byProjectToday = {{"/w/cheap", {90, 0.5}}, {"/w/dear", {10, 1.5}}, {"/", {0, 0}}};
    UsageViewModel usage;
    usage.show(report, true, dateFromUnix(1795262400)); // a Saturday's noon
    EXPECT_EQ(column(*usage.week(), "letter").join(""), "SMTWTFS");
    EXPECT_EQ(column(*usage.week(), "amounts").mid(5),
              (QStringList{"Fri: 1.0K tokens, $1.00", "Today: 100 tokens, $2.00"}));
    EXPECT_EQ(column(*usage.week(), "share").mid(5), (QStringList{"0.5", "1"}));
    EXPECT_EQ(usage.weekText(), "$3.00 in 7 days");
    EXPECT_EQ(column(*usage.projects(), "name"), (QStringList{"dear", "cheap", "/"}));

    report.week[6].cost = report.week[5].cost = 0;
    usage.show(report, true, dateFromUnix(1795262400));
    EXPECT_EQ(column(*usage.week(), "share").mid(5), (QStringList{"1", "0.1"}));
}

} // namespace
} // namespace kippo
