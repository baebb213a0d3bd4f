#include "Fakes/FakeProcessRunner.h"
#include "Fakes/PrivateHome.h"
#include "Platform/Posix/PosixProcessRunner.h"

#include <array>
#include <csignal>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace kippo {

namespace {

using Words = std::vector<std::string>;

/// The same of every implementation.
void runsPrograms(ProcessRunner& runner) {
    const Words words{"a b", "$HOME", ""};
    EXPECT_EQ(runner.output("/bin/echo", words, Seconds{10}), "a b $HOME \n");
    EXPECT_EQ(runner.output("/nonexistent/program", words, Seconds{10}), std::nullopt);
}

/// What a shell prints.
std::optional<std::string> shell(ProcessRunner& runner, const std::string& script, Seconds patience = Seconds{10}) {
    return runner.output("/bin/sh", Words{"-c", script}, patience);
}

bool runs(pid_t pid) { return kill(pid, 0) == 0; }

} // namespace

TEST(ProcessRunnerContract, RealAndFake) {
    FakeProcessRunner fake;
    fake.outputs["/bin/echo a b $HOME "] = "a b $HOME \n";
    runsPrograms(fake);
    PosixProcessRunner real;
    runsPrograms(real);
}

TEST(PosixProcessRunner, GivesTheOutputAndNothingElse) {
    PosixProcessRunner runner;
    setenv("COLUMNS", "20", 1);
    EXPECT_EQ(shell(runner, "echo out; echo err >&2; cat; printf %s \"$COLUMNS$LC_NUMERIC\"; exit 3"), "out\nC");
    unsetenv("COLUMNS");
    // Moved elsewhere, as systems without /usr/bin do; and what cannot be run is not.
    EXPECT_EQ(runner.output("/nonexistent/echo", Words{"found"}, Seconds{10}), "found\n");
    const PrivateHome folder;
    folder.write("text", "no program");
    EXPECT_EQ(runner.output(folder.path("text"), {}, Seconds{10}), std::nullopt);
    EXPECT_EQ(runner.output(folder.path(), {}, Seconds{10}), std::nullopt);
    chmod(folder.path("text").c_str(), 0700);
    EXPECT_EQ(runner.output(folder.path("text"), {}, Seconds{10}), std::nullopt);
    const auto much = shell(runner, "yes");
    EXPECT_TRUE(much && much->size() == PosixProcessRunner::outputLimit);
}

TEST(PosixProcessRunner, LosesPatience) {
    PosixProcessRunner runner;
    EXPECT_EQ(shell(runner, "exec sleep 600", Seconds{0.05}), std::nullopt);
    // It has closed its output, but goes on.
    EXPECT_EQ(shell(runner, "echo $$; exec sleep 600 >/dev/null", Seconds{0.05}), std::nullopt);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "no child is left";
}

TEST(PosixProcessRunner, StopsFromAnotherThread) {
    PosixProcessRunner runner;
    const PrivateHome folder;
    std::optional<std::string> printed{"something"};
    std::thread worker{
        [&] { printed = shell(runner, "echo $$ >" + folder.path("pid") + "; exec sleep 600", Seconds{600}); }};
    while (folder.read("pid").empty()) {
        std::this_thread::yield();
    }
    runner.stop();
    worker.join();
    EXPECT_EQ(printed, std::nullopt);
    EXPECT_FALSE(runs(std::stoi(folder.read("pid"))));
    EXPECT_EQ(shell(runner, "echo late"), std::nullopt);
}

#ifdef __linux__
TEST(PosixProcessRunner, ItsChildrenDoNotOutliveACrash) {
    std::array<int, 2> life{}; // held open by the program and its child
    ASSERT_EQ(pipe(life.data()), 0);
    const pid_t program = fork();
    if (program == 0) {
        close(life[0]);
        PosixProcessRunner runner;
        shell(runner, "echo ready >&" + std::to_string(life[1]) + "; exec sleep 600", Seconds{600});
        _exit(0);
    }
    close(life[1]);
    std::array<char, 6> ready{};
    EXPECT_EQ(read(life[0], ready.data(), ready.size()), 6);
    kill(program, SIGKILL);
    waitpid(program, nullptr, 0);
    pollfd ended{.fd = life[0], .events = POLLIN, .revents = 0};
    EXPECT_EQ(poll(&ended, 1, 10000), 1);
    close(life[0]);
}
#endif

} // namespace kippo
