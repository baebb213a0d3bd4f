#include "App/Terminal/HookProbe.h"

#include "Agents/HookBridge.h"
#include "Platform/Posix/Descriptor.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kippo::Terminal {

namespace {

constexpr int runs = 5;
constexpr std::string_view input =
    R"({"hook_event_name":"Stop","session_id":"kippo-doctor","cwd":"/","last_assistant_message":"Done"})";

/// A folder that goes away with the object, and what a hook leaves in it too.
class PrivateFolder {
public:
    PrivateFolder() {
        const char* place = std::getenv("TMPDIR");
        path_ = std::string{place != nullptr && *place == '/' ? place : "/tmp"} + "/kippo-doctor-XXXXXX";
        if (mkdtemp(path_.data()) == nullptr) {
            path_.clear();
        }
    }
    ~PrivateFolder() {
        if (!path_.empty()) {
            unlink(log().c_str());
            rmdir((path_ + "/Kippo").c_str());
            rmdir(path_.c_str());
        }
    }
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string log() const { return path_ + "/Kippo/agent-events.jsonl"; }
    off_t logSize() const {
        struct stat state{};
        return stat(log().c_str(), &state) == 0 ? state.st_size : 0;
    }

private:
    std::string path_;
};

/// A pipe that holds the hook's input already.
Descriptor filledPipe() {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return {};
    }
    Descriptor readEnd{ends[0]};
    const Descriptor writeEnd{ends[1]};
    return write(writeEnd.get(), input.data(), input.size()) == static_cast<ssize_t>(input.size()) ? std::move(readEnd)
                                                                                                   : Descriptor{};
}

/// Runs the hook once; false when it could not be started or did not end as hooks do.
bool run(std::string executable, const PrivateFolder& folder) {
    const auto pipe = filledPipe();
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe.get(), STDIN_FILENO);
    std::string flag{HookBridge::hookFlag};
    std::string home = "HOME=" + folder.path();
    std::string data = "XDG_DATA_HOME=" + folder.path();
    char* const arguments[] = {executable.data(), flag.data(), nullptr};
    char* const environment[] = {home.data(), data.data(), nullptr};
    pid_t pid = -1;
    const bool isStarted =
        pipe && posix_spawn(&pid, executable.c_str(), &actions, nullptr, arguments, environment) == 0;
    posix_spawn_file_actions_destroy(&actions);
    int status = -1;
    return isStarted && waitpid(pid, &status, 0) == pid && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

std::optional<HookProbe> probeHook(const std::string& executable) {
    const PrivateFolder folder;
    if (folder.path().empty()) {
        return std::nullopt;
    }
    HookProbe probe{.time = Seconds::max(), .wrote = true};
    for (int count = 0; count < runs; ++count) {
        const auto before = folder.logSize();
        const auto start = std::chrono::steady_clock::now();
        if (!run(executable, folder)) {
            return std::nullopt;
        }
        probe.time = std::min(probe.time, Seconds{std::chrono::steady_clock::now() - start});
        probe.wrote = probe.wrote && folder.logSize() > before;
    }
    return probe;
}

} // namespace kippo::Terminal
