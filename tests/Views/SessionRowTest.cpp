#include "Agents/Views/SessionRow.h"

#include "Samples.h"

#include <gtest/gtest.h>

namespace kippo {
namespace {

const Date now = dateFromUnix(1795226400);

TEST(SessionRowTest, StrangersTextBecomesOneShortLine) {
    AgentSession session = sampleSession("a", AgentStatus::working());
    struct {
        std::string prompt;
        QString shown;
    } const cases[] = {
        {"two\nlines\tand  gaps ", "two lines and gaps"},
        {"half \xF0\x9F a face", "half \uFFFD\uFFFD a face"},
        {std::string("nul \0 byte", 10), QString::fromUtf8("nul \0 byte", 10)},
        {"<b>bold</b> &amp;", "<b>bold</b> &amp;"},
        {std::string(2'000'000, 'x'), QString(400, u'x')},
        {" \n ", ""},
    };
    for (const auto& [prompt, shown] : cases) {
        session.prompt = prompt;
        session.activity = AgentActivity{AgentActivity::Kind::edit, "Edit", "a.cpp", false, now};
        EXPECT_EQ(sessionRow(session, now).request, shown);
    }
}

TEST(SessionRowTest, SaysNothingTwice) {
    AgentSession session = sampleSession("a", AgentStatus::working());
    session.prompt = "Fix the login";
    EXPECT_EQ(sessionRow(session, now).sentence, "Working on: Fix the login");
    EXPECT_EQ(sessionRow(session, now).request, "");

    session.activity = AgentActivity{AgentActivity::Kind::edit, "Edit", "login.cpp", false, now};
    EXPECT_EQ(sessionRow(session, now).sentence, "Editing login.cpp");
    EXPECT_EQ(sessionRow(session, now).request, "Fix the login");

    EXPECT_EQ(sessionRow(session, now).project, "atlas");
    session.cwd.reset();
    EXPECT_EQ(sessionRow(session, now).project, "");
}

TEST(SessionRowTest, CostsShowOnlyWhereTheyAreKnownAndPortsAreAtMostTwo) {
    AgentSession session = sampleSession("a", AgentStatus::idle());
    EXPECT_EQ(sessionRow(session, now).memory, "");
    EXPECT_EQ(sessionRow(session, now).cpu, "");
    session.memoryKB = 268 * 1024;
    session.cpu = 13.6;
    EXPECT_EQ(sessionRow(session, now).memory, "268 MB");
    EXPECT_EQ(sessionRow(session, now).cpu, "14% CPU");
    session.ports = {3000, 5173};
    EXPECT_EQ(sessionRow(session, now).ports, (QStringList{":3000", ":5173"}));
    session.ports = {3000, 5173, 8080, 9229};
    EXPECT_EQ(sessionRow(session, now).ports, (QStringList{":3000", ":5173", "+2"}));
}

TEST(SessionRowTest, ReadsAloudAsOneSentence) {
    AgentSession session = sampleSession("a", AgentStatus::needsYou("Has a question for you"), now);
    session.kind = AgentKind::codex;
    EXPECT_EQ(sessionRow(session, now).spoken, "Codex, atlas, Has a question for you, Waiting under a minute");
}

} // namespace
} // namespace kippo
