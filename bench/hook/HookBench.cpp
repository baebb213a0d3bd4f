// Measures what a hook costs the agent that waits for it: from starting the process, through writing the event into its
// standard input, to its end. Every contender is run in turn, so that whatever else the machine does hits all alike.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

struct Contender {
    std::string name;
    std::vector<std::string> command;
    int rounds;
    std::vector<double> microseconds{};
};

/// An event like those of an agent that writes a file: text with line feeds, quotes and some letters that are not
/// ASCII.
std::string event(std::size_t size) {
    std::string text = R"({"session_id":"5f0c2a34-8f4e-4c61-9d5a-0e5f0d2b7c11","transcript_path":)"
                       R"("/home/dev/.claude/projects/-home-dev-project/5f0c2a34.jsonl","cwd":"/home/dev/project",)"
                       R"("permission_mode":"default","hook_event_name":"PreToolUse","tool_name":"Write",)"
                       R"("tool_input":{"file_path":"/home/dev/project/src/main.cpp","content":")";
    constexpr std::string_view line =
        R"(    if (name == \"größe\" && value > 0) { total += value * 2; } // keep this in order\n)";
    while (text.size() + line.size() + 40 < size) {
        text += line;
    }
    return text + R"("},"tool_use_id":"toolu_01A"})";
}

double run(const std::vector<std::string>& command, std::string_view input) {
    std::vector<char*> words;
    for (const auto& word : command) {
        words.push_back(const_cast<char*>(word.c_str()));
    }
    words.push_back(nullptr);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        std::exit(1);
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[0], STDIN_FILENO);
    pid_t pid = -1;
    const auto start = Clock::now();
    if (posix_spawn(&pid, words[0], &actions, nullptr, words.data(), environ) != 0) {
        std::fprintf(stderr, "cannot start %s\n", words[0]);
        std::exit(1);
    }
    close(ends[0]);
    while (!input.empty()) {
        const ssize_t bytes = write(ends[1], input.data(), input.size());
        if (bytes <= 0) {
            break; // the empty program has gone without reading
        }
        input.remove_prefix(static_cast<std::size_t>(bytes));
    }
    close(ends[1]);
    int status = 0;
    waitpid(pid, &status, 0);
    const std::chrono::duration<double, std::micro> spent = Clock::now() - start;
    posix_spawn_file_actions_destroy(&actions);
    return spent.count();
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

std::string found(std::initializer_list<const char*> paths) {
    for (const char* path : paths) {
        if (access(path, X_OK) == 0) {
            return path;
        }
    }
    return {};
}

/// The same reduction as people write it into their settings.
std::vector<Contender> handWritten(const std::string& log, int rounds) {
    std::vector<Contender> all;
    if (const auto bash = found({"/bin/bash"}); !bash.empty() && !found({"/usr/bin/jq"}).empty()) {
        all.push_back({"bash and jq",
                       {bash, "-c",
                        "jq -c '{t:now,e:.hook_event_name,s:.session_id,c:.cwd,tool:.tool_name,"
                        "d:.tool_input.file_path}' >>'" +
                            log + "'"},
                       rounds});
    }
    if (const auto python = found({"/usr/bin/python3", "/usr/local/bin/python3"}); !python.empty()) {
        all.push_back({"python3",
                       {python, "-c",
                        "import json,sys,time\ni=json.load(sys.stdin)\nopen('" + log +
                            "','a').write(json.dumps({'t':time.time(),'e':i['hook_event_name'],'s':i['session_id'],"
                            "'c':i.get('cwd'),'tool':i.get('tool_name'),'d':i['tool_input'].get('file_path')})+'\\n')"},
                       rounds});
    }
    if (const auto node = found({"/usr/bin/node", "/usr/local/bin/node"}); !node.empty()) {
        all.push_back({"node",
                       {node, "-e",
                        "const fs=require('fs');const i=JSON.parse(fs.readFileSync(0));fs.appendFileSync('" + log +
                            "',JSON.stringify({t:Date.now()/1000,e:i.hook_event_name,s:i.session_id,c:i.cwd,"
                            "tool:i.tool_name,d:i.tool_input.file_path})+'\\n')"},
                       rounds});
    }
    return all;
}

void compare(std::size_t size, const std::string& home, int rounds) {
    const std::string input = event(size);
    std::vector<Contender> contenders{{"empty static program", {KIPPO_EMPTY}, rounds},
                                      {"kippo --kippo-hook", {KIPPO_EXECUTABLE, "--kippo-hook"}, rounds}};
    for (auto& contender : handWritten(home + "/by-hand.jsonl", std::max(5, rounds / 20))) {
        contenders.push_back(std::move(contender));
    }
    for (int round = 0; round < rounds; ++round) {
        for (auto& [name, command, wanted, microseconds] : contenders) {
            if (round % (rounds / wanted) == 0) {
                microseconds.push_back(run(command, input));
            }
        }
    }
    std::printf("\n%zu bytes of input\n%-24s %8s %12s %8s\n", input.size(), "", "runs", "median µs", "ratio");
    const double empty = median(contenders[0].microseconds);
    for (const auto& contender : contenders) {
        const double typical = median(contender.microseconds);
        std::printf("%-24s %8zu %11.0f %8.2f\n", contender.name.c_str(), contender.microseconds.size(), typical,
                    typical / empty);
    }
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::max(20, std::atoi(argv[1])) : 400;
    std::signal(SIGPIPE, SIG_IGN);
    std::string home = fs::temp_directory_path() / "kippo-bench-XXXXXX";
    if (mkdtemp(home.data()) == nullptr) {
        return 1;
    }
    setenv("HOME", home.c_str(), 1);
    unsetenv("XDG_DATA_HOME");
    for (int warmUp = 0; warmUp < 20; ++warmUp) {
        run({KIPPO_EXECUTABLE, "--kippo-hook"}, event(2000));
    }
    compare(2000, home, rounds);
    compare(500'000, home, rounds);
    fs::remove_all(home);
    return 0;
}
