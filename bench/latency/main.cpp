// How long a hook takes to show: from the moment an agent starts its hook command to the first changed pixel of the
// closed notch, on an X server of its own. Beside it what the pixels cost alone: a window that another process maps.

#include "../XScreen.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>

namespace {

using namespace bench;
using namespace std::chrono_literals;

constexpr int rounds = 20;
/// A pixel that the closed notch leaves free and its wings cover, on the screen below.
constexpr std::int16_t wingX = screenWidth / 2 + 92;
constexpr std::int16_t wingY = 2;

/// Runs the hook as an agent does; the answer is when it was started.
Clock::time_point sendHook(const std::string& event) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return {};
    }
    const std::string input = R"({"session_id":"bench","cwd":"/","hook_event_name":")" + event + R"("})";
    [[maybe_unused]] const auto written = write(ends[1], input.data(), input.size());
    close(ends[1]);
    const auto since = Clock::now();
    const pid_t pid = start({KIPPO_EXECUTABLE, "--kippo-hook", "--agent", "claude"}, ends[0]);
    close(ends[0]);
    waitpid(pid, nullptr, 0);
    return since;
}

/// A window mapped over the pixel and taken away again: what the server and this program's looking cost by themselves.
std::optional<double> mapWindow(xcb_connection_t* client, xcb_connection_t* server, xcb_screen_t* screen) {
    const std::uint32_t before = pixel(server, screen->root, wingX, wingY);
    const xcb_window_t window = xcb_generate_id(client);
    const std::uint32_t values[] = {0x123456, 1};
    xcb_create_window(client, XCB_COPY_FROM_PARENT, window, screen->root, wingX, wingY, 4, 4, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT,
                      values);
    const auto since = Clock::now();
    xcb_map_window(client, window);
    xcb_flush(client);
    const auto took = untilChanged(server, screen->root, wingX, wingY, before, since, 2s);
    xcb_destroy_window(client, window);
    xcb_flush(client);
    return took;
}

void report(const char* what, std::vector<double> times) {
    if (times.empty()) {
        std::printf("%-44s  nothing was seen\n", what);
        return;
    }
    std::ranges::sort(times);
    std::printf("%-44s %8.1f %8.1f %6zu\n", what, times[times.size() / 2], times[times.size() * 95 / 100],
                times.size());
}

} // namespace

int main() {
    // Nothing but the session's own state may move the wings.
    const std::string home = startHome(R"({"agentAlerts": false, "mascotEnabled": false, "onboarded": true})");
    if (home.empty()) {
        return 1;
    }
    const pid_t server = startServer();
    const pid_t panel = start({KIPPO_PANEL});
    xcb_connection_t* eyes = xcb_connect(nullptr, nullptr);
    xcb_connection_t* client = xcb_connect(nullptr, nullptr);
    xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(eyes)).data;
    paintRoot(client, screen->root);
    std::this_thread::sleep_for(4s);

    std::vector<double> shown;
    std::vector<double> mapped;
    for (int round = 0; round < rounds; ++round) {
        if (const auto took = mapWindow(client, eyes, screen)) {
            mapped.push_back(*took);
        }
        sendHook("Stop");
        std::this_thread::sleep_for(900ms); // the wings fold away
        const std::uint32_t before = pixel(eyes, screen->root, wingX, wingY);
        const auto since = sendHook("UserPromptSubmit");
        if (const auto took = untilChanged(eyes, screen->root, wingX, wingY, before, since, 2s)) {
            shown.push_back(*took);
        }
        std::this_thread::sleep_for(700ms);
    }
    std::printf("%-44s %8s %8s %6s\n", "milliseconds", "median", "95 %", "runs");
    report("a hook starts, the closed notch changes", shown);
    report("a window is mapped, the screen changes", mapped);

    xcb_disconnect(client);
    xcb_disconnect(eyes);
    kill(panel, SIGTERM);
    waitpid(panel, nullptr, 0);
    kill(server, SIGTERM);
    waitpid(server, nullptr, 0);
    std::filesystem::remove_all(home);
    return shown.empty() ? 1 : 0;
}
