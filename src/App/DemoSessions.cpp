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

void giveChild(AgentSession& to, Pid pid, std::string command, std::int64_t memoryMB, double cpu,
               std::vector<int> ports = {}) {
    ProcInfo child;
    child.pid = pid;
    child.ppid = *to.rootPID;
    child.rssKB = memoryMB * 1024;
    child.cpu = cpu;
    child.command = std::move(command);
    to.children.push_back(std::move(child));
    if (!ports.empty()) {
        to.childPorts[pid] = std::move(ports);
    }
}

DetachedProcess detached(Pid pid, std::string command, std::string cwd, double uptime, std::int64_t memoryMB,
                         std::vector<int> ports = {}) {
    DetachedProcess made;
    made.proc.pid = pid;
    made.proc.ppid = 1;
    made.proc.rssKB = memoryMB * 1024;
    made.proc.uptime = uptime;
    made.proc.command = std::move(command);
    made.cwd = std::move(cwd);
    made.ports = std::move(ports);
    return made;
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
    made.summary = "Sold-out products are greyed out in the list. Next I will do the same for the product page and for "
                   "what is already in a cart.";
    made.tokensToday = 1'240'000;
    made.costToday = 3.41;
    giveProcess(made, 3817, 268, 14, {3000, 5173});
    giveChild(made, 3911, "node /home/dev/storefront/node_modules/.bin/next dev", 121, 9, {3000});
    giveChild(made, 3934, "node /home/dev/storefront/node_modules/.bin/vite preview", 64, 2, {5173});
    giveChild(made, 3940, "node /usr/bin/tsserver", 38, 1);
    return made;
}

AgentSession running(Date now) {
    auto made = session("second", AgentKind::codex, "/home/dev/atlas", AgentStatus::working(), now - 9s);
    made.workingSince = now - 26min;
    made.prompt = "Move the tile cache to SQLite and keep the old one readable";
    made.activity = activity("exec_command", "cargo test --package atlas-cache", now - 9s);
    giveProcess(made, 3991, 184, 96);
    giveChild(made, 4011, "cargo test --package atlas-cache", 97, 91);
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

AgentSession overflowing(Date now) {
    auto made = session("over", AgentKind::codex,
                        "/home/dev/clients/a-customer-with-a-long-name/monorepo/packages/frontend/applications/shop",
                        AgentStatus::working(), now - 2s);
    made.workingSince = now - 3h;
    made.prompt =
        "Please go through the whole code base 🎉, find every place where a date is formatted by hand, replace it "
        "with the shared formatter, keep the snapshots stable, add tests for daylight-saving changes in both "
        "hemispheres, and then write up what you changed and why, one line per package. "
        "اكتب اختبارات لصفحة الدفع ثم أصلح الأخطاء. "
        "既存のデータもそのまま読めるようにしてください。 <b>Not bold</b> &amp; not an ampersand.";
    made.summary = made.prompt;
    made.activity = activity("exec_command",
                             "find packages -name '*.ts' -not -path '*/node_modules/*' -print0 | xargs -0 grep -n "
                             "toLocaleDateString | sort | uniq -c | sort -rn | head -40",
                             now - 2s);
    made.tokensToday = 48'100'000;
    made.costToday = 131.27;
    giveProcess(made, 5000, 2900, 214);
    for (int i = 0; i < 60; ++i) {
        made.ports.push_back(9000 + i);
    }
    giveChild(made, 5001, "node /home/dev/a-server-whose-name-is-longer-than-any-row", 410, 22,
              {9000, 9001, 9002, 9003, 9004});
    for (Pid pid = 5002; pid < 5030; ++pid) {
        giveChild(made, pid, "node /home/dev/node_modules/.bin/jest --worker", 61, 5);
    }
    return made;
}

UsageScanner::Report week() {
    UsageScanner::Report report;
    report.week = {{{4'100'000, 9.2},
                    {9'800'000, 21.6},
                    {0, 0},
                    {1'200'000, 2.9},
                    {12'600'000, 30.1},
                    {7'700'000, 16.4},
                    {5'380'000, 12.4}}};
    report.today = report.week.back();
    report.fiveHours = {1'910'000, 4.1};
    report.byProjectToday = {{"/home/dev/storefront", {2'900'000, 6.82}},
                             {"/home/dev/billing", {1'800'000, 4.2}},
                             {"/home/dev/handbook", {640'000, 1.31}},
                             {"/home/dev/dotfiles", {40'000, 0.07}}};
    for (const auto& [folder, totals] : report.byProjectToday) {
        report.projects.insert(folder);
    }
    report.bySessionToday = {{"work", {1'240'000, 3.41}}};
    return report;
}

std::vector<DetachedProcess> leftRunning() {
    constexpr double hour = 3600;
    return {detached(2210, "node /home/dev/storefront/node_modules/.bin/next dev", "/home/dev/storefront", 5 * hour,
                     412, {3001}),
            detached(2388, "python3 -m http.server 8000", "/home/dev/handbook", 26 * hour, 21, {8000}),
            detached(2391, "/home/dev/.cache/ms-playwright/chrome --headless", "/home/dev/storefront", 2 * hour, 388)};
}

std::vector<Leftover> leftovers() {
    constexpr std::int64_t megabyte = 1024;
    return {{"/home/dev/atlas/target", 4'820 * megabyte, "atlas"},
            {"/home/dev/storefront/node_modules", 1'160 * megabyte, "storefront"},
            {"/home/dev/.cache/ms-playwright", 940 * megabyte, "Caches"},
            {"/home/dev/storefront/.next", 388 * megabyte, "storefront"},
            {"/home/dev/billing/.claude/worktrees", 142 * megabyte, "billing"},
            {"/home/dev/handbook/.venv", 61 * megabyte, "handbook"}};
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
