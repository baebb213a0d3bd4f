// How soon Kippo is there: from the start of kippo-app to its first painted pixel on an X server of its own, everything
// read once before (warm); and the memory it then rests at. Beside it, in turns, an empty Qt Quick window.

#include "../XScreen.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>

namespace {

using namespace bench;
using namespace std::chrono_literals;

constexpr int rounds = 15;
constexpr std::int16_t x = screenWidth / 2;
constexpr std::int16_t y = 4;

struct Contender {
    const char* name;
    std::vector<std::string> command;
    std::vector<double> times{};
    double memory = 0; ///< PSS in MB
};

/// The program's share of memory, in MB.
double pss(pid_t pid) {
    std::ifstream rollup{"/proc/" + std::to_string(pid) + "/smaps_rollup"};
    std::string line;
    while (std::getline(rollup, line)) {
        if (line.starts_with("Pss:")) {
            return std::strtod(line.c_str() + 4, nullptr) / 1024;
        }
    }
    return 0;
}

void end(pid_t pid) {
    kill(pid, SIGTERM);
    waitpid(pid, nullptr, 0);
}

} // namespace

int main() {
    const std::string home = startHome(R"({"onboarded": true})");
    if (home.empty()) {
        return 1;
    }
    const pid_t server = startServer();
    xcb_connection_t* eyes = xcb_connect(nullptr, nullptr);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(eyes)).data->root;
    paintRoot(eyes, root);
    std::this_thread::sleep_for(1s);
    const std::uint32_t before = pixel(eyes, root, x, y);

    Contender contenders[] = {{"kippo-app", {KIPPO_PANEL}}, {"an empty Qt Quick window", {KIPPO_EMPTY}}};
    for (int round = -1; round < rounds; ++round) { // the first is for the caches
        for (Contender& contender : contenders) {
            const auto since = Clock::now();
            const pid_t pid = start(contender.command);
            const auto took = untilChanged(eyes, root, x, y, before, since, 20s);
            if (took && round >= 0) {
                contender.times.push_back(*took);
            }
            if (round == rounds - 1) {
                std::this_thread::sleep_for(30s);
                contender.memory = pss(pid);
            }
            end(pid);
            while (pixel(eyes, root, x, y) != before) {
                std::this_thread::sleep_for(10ms);
            }
        }
    }

    std::printf("%-28s %8s %8s %8s %6s\n", "to the first pixel, ms", "least", "median", "95 %", "PSS");
    for (Contender& contender : contenders) {
        if (contender.times.empty()) {
            std::printf("%-28s  nothing was seen\n", contender.name);
            continue;
        }
        std::ranges::sort(contender.times);
        const auto& times = contender.times;
        std::printf("%-28s %8.0f %8.0f %8.0f %3.0f MB\n", contender.name, times.front(), times[times.size() / 2],
                    times[times.size() * 95 / 100], contender.memory);
    }
    xcb_disconnect(eyes);
    end(server);
    std::filesystem::remove_all(home);
    return contenders[0].times.empty() ? 1 : 0;
}
