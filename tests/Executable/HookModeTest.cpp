// The built executable as an agent runs it: in a home of its own, with an object on standard input.

#include "Agents/HookBridge.h"
#include "Executable/Shell.h"
#include "Support/Text.h"

#include <csignal>
#include <gtest/gtest.h>
#include <mutex>
#include <set>
#include <spawn.h>
#include <thread>
#include <vector>

namespace kippo {

namespace {

namespace fs = std::filesystem;

struct HookMode : testing::Test {
    Shell home;
    const std::string log = home.path(".local/share/Kippo/agent-events.jsonl");

    /// Runs `line` with `input` in the file "input", and expects what an agent relies on: exit status 0 and not a word.
    void run(const std::string& input, const std::string& line = "kippo --kippo-hook <input") {
        run(input, line, "PATH=/usr/bin:/bin HOME=" + home.path());
    }
    void run(const std::string& input, const std::string& line, const std::string& environment) {
        home.write("input", input);
        const auto outcome = home.run(line, environment);
        EXPECT_EQ(outcome.output, "") << line << input.substr(0, 80);
        EXPECT_EQ(outcome.status, 0) << line << input.substr(0, 80);
    }

    /// The log's events; every line must be one, in UTF-8.
    std::vector<HookBridge::Event> events() const {
        const std::string text = home.read(log);
        EXPECT_TRUE(text.ends_with('\n')) << text;
        EXPECT_TRUE(Text::validUtf8(text) == text);
        std::vector<HookBridge::Event> all;
        for (const auto line : Text::split(text, '\n')) {
            const auto event = HookBridge::parse(line);
            EXPECT_TRUE(event) << line;
            all.push_back(event.value_or(HookBridge::Event{}));
        }
        return all;
    }
};

std::string stop(std::string_view session) {
    return R"({"hook_event_name":"Stop","session_id":")" + std::string{session} + "\"}";
}

/// The agent that never closes its end of the pipe: the shell holds it open.
constexpr auto withInputHeldOpen = "mkfifo pipe; exec 3<>pipe; cat input >&3; kippo --kippo-hook <&3; rm pipe";

} // namespace

TEST_F(HookMode, AppendsOneLineAndMakesItsFolderPrivate) {
    run(stop("a"), "umask 022; kippo --kippo-hook <input");
    run(stop("b"), "kippo --agent gemini --varde-hook <input");
    const auto logged = events();
    ASSERT_EQ(logged.size(), 2U);
    EXPECT_EQ(logged[0].session, "a");
    EXPECT_EQ(logged[1].source, "gemini");
    EXPECT_EQ(fs::status(log).permissions(), fs::perms{0644});
    EXPECT_EQ(fs::status(fs::path{log}.parent_path()).permissions(), fs::perms{0700});
}

TEST_F(HookMode, WritesNothingForWhatIsNoEvent) {
    for (const std::string input : {"", "{", R"({"hook_event_name":"Stop","session_id":"s")", "[]", "hello", "{}"}) {
        run(input);
    }
    run(R"({"hook_event_name":"Stop","session_)", withInputHeldOpen);
    run(stop("s"), "kippo --kippo-hook <&-");
    EXPECT_FALSE(home.exists(log));
}

TEST_F(HookMode, StaysSilentWhereItCannotWrite) {
    for (const std::string inPlaceOfLog : {"mkdir $LOG", "mkfifo $LOG", "ln -s /dev/full $LOG", "ln -s $LOG $LOG"}) {
        run(stop("s"), "LOG=.local/share/Kippo/agent-events.jsonl; rm -rf .local; mkdir -p .local/share/Kippo; " +
                           inPlaceOfLog + "; kippo --kippo-hook <input");
    }
    for (const auto* environment : {"", "HOME=", "HOME=relative", "HOME=/proc/self", "HOME=/dev/null"}) {
        run(stop("s"), "kippo --kippo-hook <input", environment);
    }
    EXPECT_FALSE(fs::exists("/agent-events.jsonl"));
    EXPECT_FALSE(fs::exists("/Kippo"));
    run(stop("s"), "rm -rf .local; kippo --kippo-hook <input", "PATH=/bin XDG_DATA_HOME=" + home.path(".local/share/"));
    EXPECT_EQ(events().size(), 1U) << "the folder is found without HOME";
}

TEST_F(HookMode, LosesNoLineBehindOneThatAFullDiskCut) {
    std::string before = R"({"t":1,"e":"Stop","s":"before","p":")";
    before += std::string(512 - 20 - before.size() - 3, 'x') + "\"}\n";
    home.write(log, before);
    // 20 bytes of the line fit below the limit of 512, POSIX's block. A build that counts coverage fails to write its
    // counts, too, and is to say so elsewhere.
    run(stop("cut"), "set -o posix; ulimit -f 1; GCOV_ERROR_FILE=/dev/null kippo --kippo-hook <input");
    ASSERT_EQ(home.read(log).size(), 512U);
    run(stop("after"));
    const auto logged = events();
    ASSERT_EQ(logged.size(), 2U);
    EXPECT_EQ(logged[0].session, "before");
    EXPECT_EQ(logged[1].session, "after");
}

TEST_F(HookMode, KeepsTheLogCleanWithClosedStreams) {
    for (const std::string closed : {">&-", "2>&-", ">&- 2>&-"}) {
        run(stop("s"), "kippo --kippo-hook <input " + closed);
    }
    EXPECT_EQ(events().size(), 3U);
}

TEST_F(HookMode, TakesWhatAgentsReallySend) {
    std::string large;
    large.resize(50'000'000, 'x');
    run(R"({"hook_event_name":"PreToolUse","session_id":"large","tool_input":{"content":")" + large +
        R"(","file_path":"/w/big"}})");
    run("{\"hook_event_name\":\"Stop\",\"session_id\":\"utf8\",\"prompt\":\"\xC3(\xFF\\ud83d\"}");
    run(stop("open"), withInputHeldOpen);
    const auto logged = events();
    ASSERT_EQ(logged.size(), 3U);
    EXPECT_EQ(logged[0].detail, "/w/big");
    EXPECT_EQ(logged[1].prompt, "\uFFFD(\uFFFD\uFFFD");
    EXPECT_EQ(logged[2].session, "open") << "an agent that does not close the pipe is served all the same";
}

TEST_F(HookMode, ManyAtOnceLoseNoLineButThoseOfTheKilled) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr int eventsEach = 10;
#else
    constexpr int eventsEach = 200;
#endif
    constexpr int agents = 32;
    std::mutex mutex;
    std::set<std::string> certain, killed;
    const std::string filler(600, 'x');
    std::string variable = "HOME=" + home.path();

    const auto start = [&](const std::string& input) {
        int ends[2] = {-1, -1};
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[0], STDIN_FILENO);
        const char* const words[] = {"kippo", "--kippo-hook", nullptr};
        char* const environment[] = {variable.data(), nullptr};
        pid_t pid = -1;
        EXPECT_EQ(posix_spawn(&pid, KIPPO_EXECUTABLE, &actions, nullptr, const_cast<char**>(words), environment), 0);
        posix_spawn_file_actions_destroy(&actions);
        // Far less than a pipe holds, and both ends are open here: this neither waits nor fails.
        EXPECT_EQ(write(ends[1], input.data(), input.size()), static_cast<ssize_t>(input.size()));
        close(ends[0]);
        close(ends[1]);
        return pid;
    };
    const auto work = [&](int agent) {
        for (int i = 0; i < eventsEach; ++i) {
            const std::string session = std::to_string(agent) + "-" + std::to_string(i);
            const pid_t pid =
                start(R"({"hook_event_name":"Stop","prompt":")" + filler + R"(","session_id":")" + session + "\"}");
            const bool isKilled = agent % 4 == 0 && i % 5 == 0;
            if (isKilled) {
                // A little later each time, to meet the process in every phase of its life.
                for (int pause = 0; pause < i; ++pause) {
                    std::this_thread::yield();
                }
                kill(pid, SIGKILL);
            }
            int status = -1;
            waitpid(pid, &status, 0);
            EXPECT_TRUE(status == 0 || isKilled) << status;
            const std::scoped_lock lock(mutex);
            (status == 0 ? certain : killed).insert(session);
        }
    };
    {
        std::vector<std::jthread> threads;
        for (int agent = 0; agent < agents; ++agent) {
            threads.emplace_back(work, agent);
        }
    }

    std::set<std::string> logged;
    for (const auto& event : events()) {
        EXPECT_TRUE(logged.insert(event.session).second) << event.session << " is there twice";
        EXPECT_EQ(event.prompt, filler.substr(0, 300));
        EXPECT_TRUE(certain.contains(event.session) || killed.contains(event.session)) << event.session;
    }
    for (const auto& session : certain) {
        EXPECT_TRUE(logged.contains(session)) << session << " is lost";
    }
    EXPECT_EQ(certain.size() + killed.size(), static_cast<std::size_t>(agents * eventsEach));
}

} // namespace kippo
