// The terminal commands of the built executable, in a home of their own. Agents of this machine may be in their lists.

#include "Executable/Shell.h"
#include "Fakes/Each.h"

#include <gtest/gtest.h>
#include <pty.h>

namespace kippo {
namespace {

class TerminalCommand : public testing::Test {
protected:
    Shell::Outcome shell(const std::string& line) const { return home.run(line); }

    /// A session starts a turn in the folder "aquarium".
    void reportASession() const {
        shell(R"(echo "{\"hook_event_name\":\"UserPromptSubmit\",\"session_id\":\"terminal-1\",)"
              R"(\"cwd\":\"/home/dev/aquarium\",\"prompt\":\"feed the fish\"}" | kippo --kippo-hook)");
    }

    std::vector<std::filesystem::path> files() const {
        return each(std::filesystem::recursive_directory_iterator{home.path()},
                    [](const auto& entry) { return entry.path(); });
    }

    Shell home;
};

TEST_F(TerminalCommand, WordsHaveTheirExitStatusAndOneLineOfComplaint) {
    const struct {
        std::string line;
        int status;
        std::string says;
    } cases[] = {
        {"kippo --version", 0, "kippo "},     {"kippo --help", 0, "kippo watch --json"}, {"kippo stauts", 2, "stauts"},
        {"kippo status --jsno", 2, "--jsno"}, {"kippo", 0, "There is no display here"},
    };
    for (const auto& [line, status, says] : cases) {
        const auto outcome = shell(line);
        EXPECT_EQ(outcome.status, status) << line;
        EXPECT_NE(outcome.output.find(says), std::string::npos) << line << ": " << outcome.output;
        if (status != 0) {
            EXPECT_EQ(outcome.output.find('\n'), outcome.output.size() - 1) << outcome.output;
        }
    }
    EXPECT_EQ(shell("kippo stauts 2>/dev/null").output, "") << "complaints belong on standard error";
}

TEST_F(TerminalCommand, StatusShowsWhatAHookReportedAndChangesNoFile) {
    reportASession();
    const auto before = files();
    ASSERT_FALSE(before.empty());
    const auto table = shell("kippo status").output;
    EXPECT_NE(table.find("aquarium"), std::string::npos) << table;
    EXPECT_EQ(table.find('\x1b'), std::string::npos) << "no colours into a pipe";
    const auto json = shell("kippo status --json").output;
    EXPECT_NE(json.find(R"("id":"terminal-1")"), std::string::npos) << json;
    EXPECT_EQ(files(), before);
}

TEST_F(TerminalCommand, WatchTellsOfNewsAndEndsQuietlyWithItsReader) {
    // The first line is the list as it was, a later one tells of the session. Then the reader leaves.
    const auto outcome = shell(
        R"({ kippo watch --json; echo "ended $?" >&2; } | { read -r first; )"
        R"(echo "{\"hook_event_name\":\"Stop\",\"session_id\":\"terminal-2\",\"cwd\":\"/home/dev/pond\"}" | kippo --kippo-hook; )"
        R"(while read -r line; do case $line in *terminal-2*) echo told; break;; esac; done; })");
    EXPECT_NE(outcome.output.find("told\n"), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("ended 0\n"), std::string::npos) << outcome.output;
}

TEST_F(TerminalCommand, WatchGivesTheTerminalBack) {
    reportASession();
    for (const auto* ending : {"q", "\x03"}) { // Ctrl-C
        const winsize size{.ws_row = 20, .ws_col = 70, .ws_xpixel = 0, .ws_ypixel = 0};
        int terminal = -1;
        const pid_t pid = forkpty(&terminal, nullptr, nullptr, &size);
        if (pid == 0) {
            setenv("HOME", home.path().c_str(), 1);
            setenv("TERM", "xterm", 1);
            execl(KIPPO_EXECUTABLE, "kippo", "watch", nullptr);
            _exit(127);
        }
        std::string seen;
        std::array<char, 4096> block{};
        while (seen.find("q quits") == std::string::npos) {
            const auto count = read(terminal, block.data(), block.size());
            ASSERT_GT(count, 0) << seen;
            seen.append(block.data(), static_cast<std::size_t>(count));
        }
        EXPECT_NE(seen.find("aquarium"), std::string::npos) << seen;
        EXPECT_EQ(write(terminal, ending, 1), 1);
        seen += readAll(terminal);
        int status = -1;
        EXPECT_EQ(waitpid(pid, &status, 0), pid);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
        EXPECT_TRUE(seen.starts_with("\x1b[?1049h")) << "takes the alternate screen";
        EXPECT_TRUE(seen.ends_with("\x1b[?25h\x1b[?1049l")) << "shows the cursor and leaves the alternate screen";
        close(terminal);
    }
}

} // namespace
} // namespace kippo
