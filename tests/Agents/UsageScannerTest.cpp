#include "Agents/UsageScanner.h"

#include "Agents/Pricing.h"
#include "Agents/UsageFiles.h"
#include "Agents/UsageLine.h"
#include "Agents/UsageSamples.h"
#include "Fakes/Each.h"
#include "Fakes/PrivateHome.h"
#include "Fakes/TimeZone.h"
#include "Support/LocalTime.h"

#include <bit>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

namespace kippo {

namespace {

using namespace std::chrono_literals;
using samples::Reply;

const std::string project = ".claude/projects/-home-dev-app/";
const std::string session = project + "s1.jsonl";
/// 2026-11-21 02:10:00 UTC, a minute after the replies.
constexpr Date now = dateFromUnix(1795227000);

struct UsageScannerTest : testing::Test {
    TimeZone zone{"UTC"};
    PrivateHome home;
    UsageScanner scanner{home.path()};

    void add(const std::string& file, const std::string& text, Date modified = now) {
        home.append(file, text);
        home.age(file, modified);
    }
    void add(const Reply& reply) { add(session, reply.line()); }
    std::int64_t today() { return scanner.refresh(now).today.tokens; }
};

} // namespace

TEST(Pricing, FirstMatchingRowWins) {
    using Pricing::price;
    using Pricing::Price;
    EXPECT_EQ(price("claude-mythos-5-1"), (Price{10, 50, 12.5, 0.25}));
    EXPECT_EQ(price("Claude-FABLE-5"), (Price{10, 50, 12.5, 1.0}));
    EXPECT_EQ(price("claude-opus-5-5-20270101"), (Price{4, 20, 5, 0.2}));
    for (const auto* name : {"opus-5", "opus-4-8", "opus-4-7", "opus-4-6", "claude-opus-4-5-20251101[1m]"}) {
        EXPECT_EQ(price(name), (Price{5, 25, 6.25, 0.5})) << name;
    }
    EXPECT_EQ(price("claude-opus-4-1"), (Price{15, 75, 18.75, 1.5}));
    EXPECT_EQ(price("claude-sonnet-5"), (Price{2, 10, 2.5, 0.2}));
    EXPECT_EQ(price("claude-3-7-sonnet-latest"), (Price{3, 15, 3.75, 3 * 0.1}));
    EXPECT_EQ(price("us.anthropic.claude-haiku-4-5"), (Price{1, 5, 1.25, 0.1}));
    EXPECT_EQ(price("claude-3-5-haiku"), (Price{0.8, 4, 1.0, 0.8 * 0.1}));
    EXPECT_EQ(price("gpt-9"), price("sonnet-4"));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(price("").cacheRead), 0x3FD3333333333334U);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(price("haiku").cacheRead), 0x3FB47AE147AE147CU);
}

TEST_F(UsageScannerTest, CountsAMessageOnceHoweverOftenItIsWritten) {
    add({});
    add({.content = R"([{"type":"text","text":"say \"usage\" {\"usage\":1}"}])"});
    add({.id = R"(\u006d1)"}); // the same id, spelled otherwise
    add({.id = "m2", .model = "<synthetic>"});
    add({.request = "r2"});
    add(project + "s1/subagents/agent-1.jsonl", Reply{}.line() + Reply{.id = "m3"}.line());
    const auto report = scanner.refresh(now);
    EXPECT_EQ(report.today.tokens, 30);
    EXPECT_DOUBLE_EQ(report.today.cost, 3 * (1 * 5 + 2 * 25 + 3 * 6.25 + 4 * 0.5) / 1e6);
    EXPECT_EQ(report.bySessionToday, (std::map<std::string, UsageScanner::Totals>{{"s1", report.today}}));
    EXPECT_EQ(report.byProjectToday, (std::map<std::string, UsageScanner::Totals>{{"/home/dev/app", report.today}}));
    EXPECT_EQ(report.week[6], report.today);
    EXPECT_EQ(report.projects, std::set<std::string>{"/home/dev/app"});

    add({});
    add(project + "s2.jsonl", Reply{.session = "s2"}.line() + Reply{.id = "m4", .session = "s2"}.line());
    const auto later = scanner.refresh(now);
    EXPECT_EQ(later.today.tokens, 40);
    EXPECT_EQ(later.bySessionToday.at("s2").tokens, 10);
    EXPECT_EQ(scanner.refresh(now), later);
}

TEST_F(UsageScannerTest, TheOlderOfTwoFilesIsCredited) {
    add(project + "a.jsonl", Reply{.session = "fork"}.line() + Reply{.id = "m2", .session = "fork"}.line(), now);
    add(project + "b.jsonl", Reply{.session = "origin"}.line(), now - 1h);
    const auto report = scanner.refresh(now);
    EXPECT_EQ(report.bySessionToday.at("origin").tokens, 10);
    EXPECT_EQ(report.bySessionToday.at("fork").tokens, 10);
}

TEST_F(UsageScannerTest, SkipsWhatRecordsNothing) {
    const std::string good = Reply{}.line();
    const auto with = [&](std::string_view part, std::string_view instead) {
        return std::string{good}.replace(good.find(part), part.size(), instead);
    };
    add(session, with("assistant", "user") + with("\"message\"", "\"massage\"") +
                     with("usage\":{", "usage\":[]},\"x\":{") + with("timestamp", "time") +
                     with(Reply::stamp(Reply{}.date), "yesterday") + with("null", "nil") +
                     "\n\"usage\"\n{\"usage\":\n" + good.substr(0, 40) + "\n" + std::string(300000, 'x') + "\n");
    EXPECT_EQ(scanner.refresh(now), UsageScanner::Report{});
    // What is missing counts nothing; without a name for session or message there is the file's, and the line itself.
    const std::string bare = R"({"type":"assistant","timestamp":"2026-11-21T02:00:00Z","message":{"usage":)";
    add(session, bare + R"({"input_tokens":5}}})" + "\n" + bare + R"({"input_tokens":5}}})" + "\n" + bare +
                     R"({"output_tokens":7,"input_tokens":-3,"cache_read_input_tokens":9e99}}})" + "\n");
    const auto report = scanner.refresh(now);
    EXPECT_EQ(report.today.tokens, 12);
    EXPECT_DOUBLE_EQ(report.today.cost, (5 * 3.0 + 7 * 15.0) / 1e6);
    EXPECT_EQ(report.bySessionToday.at("s1").tokens, 12);
    EXPECT_TRUE(report.projects.empty());
}

TEST_F(UsageScannerTest, SortsByLocalDayAndByTheLastFiveHours) {
    const TimeZone berlin{"Europe/Berlin"};
    const Date midnight = startOfLocalDay(now);
    const auto at = [&](const char* id, Date date) { add({.id = id, .date = date}); };
    at("a", midnight + 1s);
    at("b", midnight - 60s); // 23:59 yesterday, less than five hours ago
    at("c", now - 5h + 1s);
    at("d", now - 5h - 1s);
    at("e", startOfLocalDay(now, -6));
    at("f", startOfLocalDay(now, -6) - 1s);
    at("g", now + 48h); // a clock was wrong
    const auto report = scanner.refresh(now);
    EXPECT_EQ(each(report.week, &UsageScanner::Totals::tokens), (std::vector<std::int64_t>{10, 0, 0, 0, 0, 30, 20}));
    EXPECT_EQ(report.today.tokens, 20);
    EXPECT_EQ(report.fiveHours.tokens, 40);

    const auto tomorrow = scanner.refresh(now + 24h);
    EXPECT_EQ(tomorrow.week[4].tokens, 30);
    EXPECT_EQ(tomorrow.week[0].tokens, 0);
    EXPECT_EQ(tomorrow.today.tokens, 10);
}

TEST_F(UsageScannerTest, ReadsEachLineWhenItIsWhole) {
    const std::string text = Reply{}.line() + Reply{.id = "m2", .content = "\"" + std::string(3000, 'x') + "\""}.line();
    for (std::size_t split = 1; split < text.size(); split += 13) {
        const std::string file = project + std::to_string(split) + ".jsonl";
        UsageScanner fresh{home.path()};
        add(file, text.substr(0, split));
        EXPECT_EQ(fresh.refresh(now).today.tokens, split > Reply{}.line().size() - 1 ? 10 : 0) << split;
        add(file, text.substr(split));
        EXPECT_EQ(fresh.refresh(now).today.tokens, 20) << split;
        std::filesystem::remove(home.path(file));
    }
    // Lines of some blocks, and one that ends with a block.
    add({.id = "long", .content = "\"" + std::string(1500000, 'x') + "\""});
    const auto bare = Reply{.content = "\"\""}.line().size();
    const auto size = std::filesystem::file_size(home.path(session));
    const auto block = std::size_t{256} << 10U;
    add({.id = "m3", .content = "\"" + std::string(block - size % block + block - bare, 'x') + "\""});
    EXPECT_EQ(std::filesystem::file_size(home.path(session)) % block, 0U);
    EXPECT_EQ(today(), 20);
    add({.id = "m4"});
    EXPECT_EQ(today(), 30);
}

TEST_F(UsageScannerTest, StartsAgainWhereAFileWasReplaced) {
    add({});
    add({.id = "m2"});
    EXPECT_EQ(today(), 20);
    home.write(session, Reply{.id = "m3"}.line());
    home.age(session, now);
    EXPECT_EQ(today(), 30);
    // Another file of the same name, longer than the old one was.
    add(project + "new.tmp", Reply{.id = "m4"}.line() + Reply{.id = "m5"}.line());
    std::filesystem::rename(home.path(project + "new.tmp"), home.path(session));
    EXPECT_EQ(today(), 50);
    std::filesystem::remove_all(home.path(".claude"));
    EXPECT_EQ(today(), 50);
}

TEST_F(UsageScannerTest, FindsTranscriptsAndNothingElse) {
    add(project + ".hidden.jsonl", Reply{.id = "a"}.line());
    add(project + ".hidden/b.jsonl", Reply{.id = "b"}.line());
    add(project + "c.json", Reply{.id = "c"}.line());
    add(project + "old.jsonl", Reply{.id = "d"}.line(), startOfLocalDay(now, -6) - 1s);
    add(project + "\xff\xfe.jsonl", R"({"type":"assistant","timestamp":"2026-11-21T02:00:00Z","message":{"usage":)"
                                    R"({"input_tokens":10}}})"
                                    "\n");
    add("elsewhere/e.jsonl", Reply{.id = "e"}.line());
    std::filesystem::create_directory_symlink(home.path("elsewhere"), home.path(project + "link"));
    std::filesystem::create_directory_symlink(home.path(".claude"), home.path(project + "circle"));
    std::filesystem::create_symlink("nowhere", home.path(project + "gone.jsonl"));
    mkfifo(home.path(project + "pipe.jsonl").c_str(), 0600);
    const auto report = scanner.refresh(now);
    EXPECT_EQ(report.today.tokens, 20);
    EXPECT_TRUE(report.bySessionToday.contains("\uFFFD\uFFFD"));
}

TEST_F(UsageScannerTest, CountsTheSameOnTwoThreadsAndEndsWhenCancelled) {
    const std::string filler = R"({"type":"user","text":")" + std::string(100000, 'x') + "\"}\n";
    for (int file = 0; file < 10; ++file) {
        std::string text;
        for (int line = 0; line < 12; ++line) {
            text += filler;
            text += Reply{.id = "m" + std::to_string(file * 6 + line), .session = std::to_string(file)}.line();
        }
        add(project + std::to_string(file) + ".jsonl", text, now - Seconds{1.0 * file});
    }
    const auto report = scanner.refresh(now); // each file repeats half of the next one's messages
    EXPECT_EQ(report.today.tokens, 660);
    EXPECT_EQ(report.bySessionToday.at("9").tokens, 120);
    EXPECT_EQ(report.bySessionToday.at("0").tokens, 60);

    UsageScanner stopped{home.path()};
    std::thread other{[&] { stopped.cancel(); }};
    EXPECT_LE(stopped.refresh(now).today.tokens, 660);
    other.join();
    const auto partial = stopped.refresh(now);
    EXPECT_EQ(stopped.refresh(now), partial);

    std::atomic<bool> cancelled = false;
    int pieces = 0;
    const auto path = home.path(project + "1.jsonl");
    const auto reached =
        UsageFiles::LineReader{}.read(path, 0, std::filesystem::file_size(path), cancelled, [&](std::string_view text) {
            EXPECT_EQ(text.back(), '\n');
            ++pieces;
            cancelled = true;
        });
    EXPECT_EQ(pieces, 1);
    EXPECT_LT(reached.line, reached.byte);
    EXPECT_LT(reached.byte, std::filesystem::file_size(path));
}

TEST(ByteSearch, FindsWhatThePlainSearchFinds) {
    std::string text;
    for (int step = 0; step < 400; ++step) {
        text += step % 37 == 0 ? "\"usage\"" : step % 5 == 0 ? "\"usag\"e\"" : step % 3 == 0 ? "u\"" : "\n";
        std::size_t at = 0;
        for (std::size_t from = 0; from != std::string::npos; from = at == std::string::npos ? at : at + 1) {
            at = text.find("\"usage\"", from);
            ASSERT_EQ(UsageLine::marker.find(text, from), at) << text;
        }
        ASSERT_EQ(findLast(text, '\n'), text.rfind('\n'));
    }
}

} // namespace kippo
