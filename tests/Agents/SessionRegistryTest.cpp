#include "Agents/SessionRegistry.h"
#include "Agents/TranscriptSamples.h"
#include "Fakes/Each.h"
#include "Fakes/PrivateHome.h"

#include <gtest/gtest.h>

namespace kippo {

namespace {

std::string entry(int pid, const std::string& more = "") {
    return R"({"pid":)" + std::to_string(pid) + R"(,"sessionId":"s)" + std::to_string(pid) + "\"" + more + "}";
}

} // namespace

TEST(SessionRegistry, ReadsWhatClaudeCodeWrites) {
    std::vector<RegistryEntry> entries;
    for (const std::string& line : samples::linesOf(KIPPO_FIXTURES "/claude-sessions.jsonl")) {
        ASSERT_TRUE(SessionRegistry::parse(line));
        entries.push_back(*SessionRegistry::parse(line));
    }
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[1], (RegistryEntry{.pid = 13899,
                                         .session = "169a6bbd-8caa-4aaf-ae0e-b183effcddb6",
                                         .cwd = "/home/dev/f",
                                         .entrypoint = "cli",
                                         .procStart = 240677,
                                         .status = RegistryEntry::Status::waiting,
                                         .waitingFor = "permission prompt",
                                         .statusUpdatedAt = dateFromUnix(1795226448.150)}));
    EXPECT_EQ(entries[0].status, RegistryEntry::Status::idle);
    EXPECT_EQ(entries[2].status, RegistryEntry::Status::unknown);
    EXPECT_FALSE(entries[2].statusUpdatedAt);
}

TEST(SessionRegistry, SkipsDamagedEntriesAndUnknownMembers) {
    RegistryEntry bare;
    bare.pid = 7;
    bare.session = "s";
    EXPECT_EQ(SessionRegistry::parse(R"({"new":{"status":"busy"},"pid":7,"sessionId":"s","status":"dozing"})"), bare);
    EXPECT_EQ(SessionRegistry::parse(entry(7, R"(,"procStart":99,"cwd":null,"statusUpdatedAt":"soon")"))->procStart,
              99U);
    EXPECT_EQ(SessionRegistry::parse(entry(7, R"(,"procStart":"9x")"))->procStart, 0U);
    for (const auto* text :
         {"", "null", "[]", "{}", R"({"pid":7})", R"({"pid":"7","sessionId":"s"})", R"({"pid":-7,"sessionId":"s"})",
          R"({"pid":99999999999,"sessionId":"s"})", R"({"pid":7,"sessionId":"s")", R"({"pid":7,"sessionId":"s"} {})"}) {
        EXPECT_FALSE(SessionRegistry::parse(text)) << text;
    }
}

TEST(SessionRegistry, FollowsTheFolder) {
    const PrivateHome home;
    EXPECT_TRUE(SessionRegistry::read(home.path()).empty());
    home.write(".claude/sessions/20.json", entry(20, R"(,"status":"idle")"));
    home.write(".claude/sessions/3.json", entry(3));
    home.write(".claude/sessions/4.json", "{ half");
    home.write(".claude/sessions/5.json", entry(5, R"(,"padding":")" + std::string(70000, 'x') + "\""));
    home.write(".claude/sessions/6.txt", entry(6));
    home.write(".claude/sessions/8.json/inner", "");
    ASSERT_EQ(::mkfifo(home.path(".claude/sessions/9.json").c_str(), 0600), 0);
    SessionRegistryReader reader{home.path()};
    EXPECT_EQ(each(reader.poll(), &RegistryEntry::pid), (std::vector<Pid>{3, 20}));
    EXPECT_EQ(each(reader.poll(), &RegistryEntry::pid), (std::vector<Pid>{3, 20}));

    // The same length and, on many file systems, the same date.
    home.write(".claude/sessions/20.json", entry(20, R"(,"status":"busy")"));
    home.write(".claude/sessions/4.json", entry(4));
    std::filesystem::remove(home.path(".claude/sessions/3.json"));
    const auto entries = reader.poll();
    EXPECT_EQ(each(entries, &RegistryEntry::pid), (std::vector<Pid>{4, 20}));
    EXPECT_EQ(entries.back().status, RegistryEntry::Status::busy);
    EXPECT_EQ(SessionRegistry::read(home.path()), entries);
}

} // namespace kippo
