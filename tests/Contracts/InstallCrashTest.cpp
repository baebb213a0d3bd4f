// Installs and removals that are cut off, or refused, at each of their system calls in turn: whatever the moment, the
// agent finds its old settings or its new ones.

#include "Agents/HookInstallation.h"
#include "Fakes/PrivateHome.h"
#include "Platform/Posix/PosixUserFiles.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <functional>
#include <gmock/gmock.h>
#include <sys/ptrace.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace kippo {

namespace {

const std::string executable = "/opt/kippo/bin/kippo";
const std::string settings =
    "{\n    \"hooks\": {\n        \"Stop\": [\n            {\"hooks\": []}\n        ]\n    }\n}\n";

/// In memory where there is such a place: the changes are flushed to the disk hundreds of times here.
struct FastHome : PrivateHome {
    FastHome() : PrivateHome(access("/dev/shm", W_OK) == 0 ? "/dev/shm" : std::filesystem::temp_directory_path()) {}
};

/// What happens to a traced process at its nth system call.
struct Blow {
    int call = 0;
    int error = 0; ///< the call fails with it and does nothing else; 0 kills the process in place of the call
};

struct Fate {
    bool wasHit = false; ///< it lived to the nth call
    bool saysDone = false;
};

// The thread sanitizer hangs when one of the calls that it makes itself is refused.
#if defined(__x86_64__) && !defined(__SANITIZE_THREAD__)
constexpr bool canRefuse = true;
void replaceCall(pid_t child) { ptrace(PTRACE_POKEUSER, child, offsetof(user, regs.orig_rax), -1L); }
void setOutcome(pid_t child, long outcome) { ptrace(PTRACE_POKEUSER, child, offsetof(user, regs.rax), outcome); }
#else
constexpr bool canRefuse = false;
void replaceCall(pid_t) {}
void setOutcome(pid_t, long) {}
#endif

/// Runs `work` in a process of its own; nothing where the system forbids tracing.
std::optional<Fate> run(const std::function<bool()>& work, Blow blow) {
    const pid_t child = fork();
    if (child == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            _exit(2);
        }
        std::raise(SIGSTOP);
        _exit(work() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFSTOPPED(status)) {
        return std::nullopt;
    }
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    Fate fate;
    bool entering = false;
    bool refused = false;
    int calls = 0;
    long passedOn = 0;
    while (ptrace(PTRACE_SYSCALL, child, nullptr, passedOn) == 0 && waitpid(child, &status, 0) == child &&
           WIFSTOPPED(status)) {
        const bool isCall = WSTOPSIG(status) == (SIGTRAP | 0x80);
        passedOn = isCall ? 0 : WSTOPSIG(status);
        entering = isCall ? !entering : entering;
        if (isCall && entering && ++calls == blow.call) {
            fate.wasHit = true;
            refused = blow.error != 0;
            refused ? replaceCall(child) : static_cast<void>(kill(child, SIGKILL));
        } else if (isCall && refused) {
            setOutcome(child, -blow.error);
            refused = false;
        }
    }
    while (!WIFEXITED(status) && !WIFSIGNALED(status) && waitpid(child, &status, 0) == child) {
    }
    fate.saysDone = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return fate;
}

struct InstallCrashTest : testing::TestWithParam<std::tuple<HookAgent, bool>> {
    HookAgent agent = std::get<0>(GetParam());
    bool installs = std::get<1>(GetParam());
    PosixUserFiles files;

    bool change(const PrivateHome& folder) {
        const HookBridge::SettingsHome home{files, folder.path()};
        return (installs ? HookBridge::install(home, agent, executable) : HookBridge::uninstall(home, agent))
            .has_value();
    }
    /// A home in which the change is to be made; the settings are a link into another folder.
    void prepare(const PrivateHome& folder) {
        const std::string file{settingsPath(agent)};
        folder.write("dotfiles/" + std::filesystem::path{file}.filename().string(), settings);
        std::filesystem::create_directories(std::filesystem::path{folder.path(file)}.parent_path());
        std::filesystem::create_symlink("../dotfiles/" + std::filesystem::path{file}.filename().string(),
                                        folder.path(file));
        if (!installs) {
            EXPECT_TRUE(HookBridge::install({files, folder.path()}, agent, executable));
        }
    }
    void check(const PrivateHome& folder, const std::string& before, const std::string& after) {
        const std::string file{settingsPath(agent)};
        EXPECT_THAT(folder.read(file), testing::AnyOf(before, after));
        if (folder.exists(file + ".kippo-backup")) {
            EXPECT_EQ(folder.read(file + ".kippo-backup"), settings);
        }
        // The next one brings it to its end and cleans up.
        EXPECT_TRUE(HookBridge::install({files, folder.path()}, agent, executable));
        EXPECT_TRUE(HookBridge::uninstall({files, folder.path()}, agent));
        EXPECT_EQ(folder.read(file), settings);
        EXPECT_EQ(std::distance(std::filesystem::recursive_directory_iterator{folder.path()}, {}), 5)
            << "two folders, the link, the file and its backup";
    }
};

std::string nameOf(const testing::TestParamInfo<std::tuple<HookAgent, bool>>& info) {
    return std::string{rawValue(std::get<0>(info.param))} + (std::get<1>(info.param) ? "Install" : "Removal");
}

} // namespace

TEST_P(InstallCrashTest, LeavesTheOldSettingsOrTheNew) {
    const FastHome model;
    prepare(model);
    const std::string before = model.read(std::string{settingsPath(agent)});
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(change(model));
    const auto duration = std::chrono::steady_clock::now() - start;
    const std::string after = model.read(std::string{settingsPath(agent)});
    ASSERT_NE(before, after);

    std::vector<int> blows{0};
    if (canRefuse && agent == HookAgent::claude) {
        blows.insert(blows.end(), {ENOSPC, EIO, EACCES});
    }
    int points = 0;
    for (const int error : blows) {
        for (int call = 1;; ++call) {
            SCOPED_TRACE(testing::Message() << "call " << call << ", error " << error);
            const FastHome folder;
            prepare(folder);
            const auto fate = run([&] { return change(folder); }, {call, error});
            if (!fate) {
                // No tracing here: moments spread over the time that the change takes.
                for (int moment = 0; moment < 200; ++moment) {
                    const FastHome other;
                    prepare(other);
                    const pid_t child = fork();
                    if (child == 0) {
                        _exit(change(other) ? 0 : 1);
                    }
                    std::this_thread::sleep_for(duration * moment / 150);
                    kill(child, SIGKILL);
                    waitpid(child, nullptr, 0);
                    check(other, before, after);
                }
                return;
            }
            if (error != 0 && folder.read(std::string{settingsPath(agent)}) == before) {
                EXPECT_FALSE(fate->saysDone) << "the user would believe it";
            }
            if (error == 0 ? fate->saysDone : !fate->wasHit) {
                EXPECT_TRUE(fate->saysDone);
                break;
            }
            ++points;
            check(folder, before, after);
        }
    }
    EXPECT_GT(points, 20);
    RecordProperty("points", points);
}

INSTANTIATE_TEST_SUITE_P(EachAgent, InstallCrashTest,
                         testing::Combine(testing::ValuesIn(allHookAgents), testing::Bool()), nameOf);

} // namespace kippo
