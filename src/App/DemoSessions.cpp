#include "App/DemoSessions.h"

namespace kippo::DemoSessions {

namespace {

using namespace std::chrono_literals;

AgentSession session(std::string id, AgentKind kind, std::string cwd, AgentStatus status, Date heard) {
    AgentSession made;
    made.id = std::move(id);
    made.kind = kind;
    made.cwd = std::move(cwd);
    made.status = std::move(status);
    made.lastEvent = heard;
    return made;
}

void giveProcess(AgentSession& to, Pid pid, std::int64_t memoryMB, double cpu, std::vector<int> ports = {}) {
    to.rootPID = pid;
    to.memoryKB = memoryMB * 1024;
    to.cpu = cpu;
    to.ports = std::move(ports);
}

AgentActivity activity(std::string tool, std::string detail, Date time) {
    return {AgentActivity::kindOf(tool), std::move(tool), std::move(detail), false, time};
}

AgentSession resting(Date now) {
    auto made = session("rest", AgentKind::opencode, "/home/dev/dotfiles", AgentStatus::idle(), now - 47min);
    giveProcess(made, 4105, 311, 0);
    return made;
}

} // namespace

AgentSession working(Date now) {
    auto made = session("work", AgentKind::claude, "/home/dev/storefront", AgentStatus::working(), now - 3s);
    made.workingSince = now - 4min - 10s;
    made.prompt = "Add a sold-out state to the product page";
    made.activity = activity("Edit", "src/pages/ProductPage.tsx", now - 3s);
    giveProcess(made, 3817, 268, 14, {3000, 5173});
    return made;
}

AgentSession running(Date now) {
    auto made = session("second", AgentKind::codex, "/home/dev/atlas", AgentStatus::working(), now - 9s);
    made.workingSince = now - 26min;
    made.prompt = "Move the tile cache to SQLite and keep the old one readable";
    made.activity = activity("exec_command", "cargo test --package atlas-cache", now - 9s);
    giveProcess(made, 3991, 184, 96);
    return made;
}

AgentSession waiting(Date now) {
    auto made = session("wait", AgentKind::claude, "/home/dev/billing",
                        AgentStatus::needsYou("Waiting for you to approve a command"), now - 95s);
    made.prompt = "Write the migration for the new invoice numbers";
    giveProcess(made, 3702, 251, 1);
    return made;
}

AgentSession finished(Date now) {
    auto made = session("done", AgentKind::gemini, "/home/dev/handbook", AgentStatus::done(), now - 6min);
    made.prompt = "Check every link of the handbook";
    made.summary = "214 links checked; 3 were dead and now point to their new homes";
    giveProcess(made, 3555, 402, 0);
    return made;
}

AgentSession verbose(Date now) {
    auto made = session("verbose", AgentKind::claude, "/home/dev/a-monorepo-with-a-really-rather-long-name-frontend",
                        AgentStatus::done(), now - 5s);
    made.customName = "The night shift on the build machine in the cellar";
    made.summary = "Went through the whole code base 🎉, replaced every hand-made date by the shared formatter, "
                   "and added tests for daylight-saving changes in both hemispheres; "
                   "既存のデータもそのまま読めます";
    return made;
}

std::vector<AgentSession> afternoon(Date now) {
    return {waiting(now), working(now), running(now), finished(now), resting(now)};
}

std::vector<AgentSession> crowd(Date now) {
    auto question = session("question", AgentKind::cursor, "/home/dev/пример-проекта",
                            AgentStatus::needsYou("Has a question for you"), now - 12min);
    question.prompt = "新しい請求書番号のマイグレーションを書いて、古いデータもそのまま読めるようにしてください";

    auto plan = session("plan", AgentKind::claude, "/home/dev/الواجهة",
                        AgentStatus::needsYou("Waiting for you to review its plan"), now - 40s);
    plan.prompt = "اكتب اختبارات لصفحة الدفع ثم أصلح الأخطاء";

    auto novel = session("novel", AgentKind::claude, "/home/dev/a-monorepo-with-a-really-rather-long-name-frontend",
                         AgentStatus::working(), now - 1s);
    novel.workingSince = now - 3h;
    novel.prompt =
        "Please go through the whole code base, find every place where a date is formatted by hand, replace it "
        "with the shared formatter, keep the snapshots stable, add tests for daylight-saving changes in both "
        "hemispheres, and then write up what you changed and why in the changelog, one line per package.";
    giveProcess(novel, 4001, 1480, 187, {3000, 3001, 5173, 9229});

    auto emoji = session("emoji", AgentKind::custom, "/home/dev/party 🎉", AgentStatus::working(), now - 20s);
    emoji.customName = "nightshift";
    emoji.workingSince = now - 30s;
    emoji.prompt = "Celebrate 👩‍👩‍👧‍👦 every 🇯🇵 release with confetti";
    giveProcess(emoji, 4002, 96, 3);

    auto aider = session("aider", AgentKind::aider, "/home/dev/papers", AgentStatus::done(), now - 2h);
    aider.summary = "Split the bibliography by chapter";

    auto desktop = session("desktop", AgentKind::claudeDesktop, "", AgentStatus::idle(), now - 26h);
    giveProcess(desktop, 4003, 640, 0);

    return {plan, question, waiting(now), novel, emoji, working(now), running(now), finished(now), aider, desktop};
}

} // namespace kippo::DemoSessions
