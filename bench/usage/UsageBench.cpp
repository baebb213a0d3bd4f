// What it costs to count a week's usage from a gigabyte of transcripts, beside grep and ccusage on the same files in
// the same run. Every contender is a process of its own, started in turns, with the files in the page cache.
//
//   bench_usage [CCUSAGE]

#include "Agents/UsageScanner.h"
#include "Support/JsonSkim.h"
#include "UsageCorpus.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace kippo;
using Clock = std::chrono::steady_clock;

constexpr int rounds = 7;
constexpr int refreshes = 101;

const std::string home = KIPPO_BENCH_TREE "/usage-corpus";

double since(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

std::string contents(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream{path}.rdbuf();
    return text.str();
}

/// The most memory this process ever had, in KiB.
long peakMemory() {
    const auto status = contents("/proc/self/status");
    return std::strtol(status.c_str() + status.find("VmHWM:") + 6, nullptr, 10);
}

struct Run {
    double milliseconds = 0; ///< on the clock
    double processor = 0;    ///< milliseconds on any core
    std::string output;
};

/// Runs a program with its output in a file, as a person would who keeps it.
Run run(const std::vector<std::string>& command) {
    const std::string output = KIPPO_BENCH_TREE "/usage-output";
    std::vector<char*> arguments;
    for (const auto& part : command) {
        arguments.push_back(const_cast<char*>(part.c_str()));
    }
    arguments.push_back(nullptr);
    const auto start = Clock::now();
    const pid_t child = ::fork();
    if (child == 0) {
        ::setenv("HOME", home.c_str(), 1);
        ::dup2(::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600), 1);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    int status = 0;
    rusage used{};
    ::wait4(child, &status, 0, &used);
    Run run;
    run.milliseconds = since(start);
    const auto milliseconds = [](const timeval& time) {
        return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
    };
    run.processor = milliseconds(used.ru_utime) + milliseconds(used.ru_stime);
    run.output = contents(output);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "%s failed\n", command[0].c_str());
        std::exit(1);
    }
    return run;
}

struct Counted {
    double tokens = 0;
    double cost = 0;
};

/// The first scan of a program that was just started. Prints tokens, cost and memory.
int scan(bool reads) {
    Counted counted;
    if (reads) {
        for (const auto& day : UsageScanner{home}.refresh(UsageCorpus::end).week) {
            counted.tokens += double(day.tokens);
            counted.cost += day.cost;
        }
    }
    std::printf("%.0f %.6f %ld\n", counted.tokens, counted.cost, peakMemory());
    return 0;
}

/// The totals of ccusage's JSON.
Counted totalsOf(const std::string& text) {
    Counted counted;
    JsonSkim json{text};
    json.object([&](const JsonText& key) {
        if (key == "totals") {
            json.object([&](const JsonText& member) {
                if (member == "totalTokens") {
                    counted.tokens = std::strtod(std::string{json.value()}.c_str(), nullptr);
                } else if (member == "totalCost") {
                    counted.cost = std::strtod(std::string{json.value()}.c_str(), nullptr);
                }
            });
        }
    });
    return counted;
}

void compare(const std::string& ccusage) {
    struct Contender {
        const char* name;
        std::vector<std::string> command;
        std::vector<double> wall{};
        std::vector<double> processor{};
        std::string output{};
    };
    std::vector<Contender> contenders{
        {"Kippo, first scan", {"/proc/self/exe", "scan"}},
        {"grep -rc '\"usage\"' > FILE", {"grep", "-rc", "\"usage\"", home + "/.claude/projects"}},
    };
    if (!ccusage.empty()) {
        contenders.push_back({"ccusage claude daily --offline", {ccusage, "claude", "daily", "--offline", "--json"}});
    }
    for (int round = 0; round < rounds; ++round) {
        for (auto& contender : contenders) {
            auto result = run(contender.command);
            contender.wall.push_back(result.milliseconds);
            contender.processor.push_back(result.processor);
            contender.output = std::move(result.output);
        }
    }
    std::printf("%-34s %10s %10s %10s %12s\n", "", "median ms", "best ms", "CPU ms", "Kippo takes");
    for (const auto& contender : contenders) {
        std::printf("%-34s %10.1f %10.1f %10.1f %11.2fx\n", contender.name, median(contender.wall),
                    std::ranges::min(contender.wall), median(contender.processor),
                    median(contenders[0].wall) / median(contender.wall));
    }
    Counted own;
    long memory = 0;
    long empty = 0;
    std::sscanf(contenders[0].output.c_str(), "%lf %lf %ld", &own.tokens, &own.cost, &memory);
    std::sscanf(run({"/proc/self/exe", "empty"}).output.c_str(), "%*f %*f %ld", &empty);
    std::printf("\n%-34s %20s %14s\n", "", "tokens", "US dollars");
    std::printf("%-34s %20.0f %14.4f\n", "Kippo", own.tokens, own.cost);
    if (!ccusage.empty()) {
        const auto other = totalsOf(contenders[2].output);
        std::printf("%-34s %20.0f %14.4f\n", "ccusage", other.tokens, other.cost);
        std::printf("%s\n", own.tokens == other.tokens && std::abs(own.cost - other.cost) < 1e-4 ? "They agree."
                                                                                                 : "They DIFFER.");
    }
    std::printf("\nmost memory of the first scan, above the empty program: %.1f MB\n", double(memory - empty) / 1024);
}

void refresh() {
    const auto root = std::filesystem::recursive_directory_iterator{home + "/.claude/projects"};
    std::string path;
    for (const auto& entry : root) {
        if (entry.path().extension() == ".jsonl" && entry.path().string() > path) {
            path = entry.path().string();
        }
    }
    struct stat before{};
    ::stat(path.c_str(), &before);
    UsageScanner scanner{home};
    auto report = scanner.refresh(UsageCorpus::end);
    std::vector<double> grown;
    std::vector<double> quiet;
    for (int round = 0; round < refreshes; ++round) {
        std::ofstream{path, std::ios::app} << UsageCorpus::growth(10'000, round);
        auto start = Clock::now();
        const auto next = scanner.refresh(UsageCorpus::end);
        grown.push_back(since(start));
        if (next == report) {
            std::fputs("the growth was not counted: figures would mean nothing\n", stderr);
            std::exit(1);
        }
        report = next;
        start = Clock::now();
        scanner.refresh(UsageCorpus::end);
        quiet.push_back(since(start));
    }
    ::truncate(path.c_str(), before.st_size);
    const std::array times{before.st_atim, before.st_mtim};
    ::utimensat(AT_FDCWD, path.c_str(), times.data(), 0);
    std::ranges::sort(grown);
    std::ranges::sort(quiet);
    std::printf("refresh, one of 400 files grown by 10 KB: median %.2f ms, 95 %% %.2f ms\n", grown[refreshes / 2],
                grown[refreshes * 95 / 100]);
    std::printf("refresh, nothing new:                     median %.2f ms, 95 %% %.2f ms\n", quiet[refreshes / 2],
                quiet[refreshes * 95 / 100]);
}

} // namespace

int main(int count, char** arguments) {
    const std::string first = count > 1 ? arguments[1] : "";
    if (first == "scan" || first == "empty") {
        return scan(first == "scan");
    }
    UsageCorpus::make(home);
    compare(first);
    refresh();
}
