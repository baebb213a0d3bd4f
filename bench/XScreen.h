#pragma once

// What the benchmarks that look at a screen share: a home and an X server of their own, and an eye on one of its
// pixels.

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <spawn.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>

extern char** environ; // NOLINT(readability-identifier-naming)

namespace bench {

using Clock = std::chrono::steady_clock;

constexpr int screenWidth = 1600;

/// Starts a program, with `input` as its standard input if there is one.
inline pid_t start(const std::vector<std::string>& command, int input = -1) {
    std::vector<char*> words;
    for (const std::string& word : command) {
        words.push_back(const_cast<char*>(word.c_str()));
    }
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (input >= 0) {
        posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    }
    pid_t pid = -1;
    if (posix_spawnp(&pid, words[0], &actions, nullptr, words.data(), environ) != 0) {
        pid = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    return pid;
}

/// A home folder of its own with these settings, for whatever is started from now on; empty when there is none.
inline std::string startHome(const char* settings) {
    std::string home = (std::filesystem::temp_directory_path() / "kippo-bench-XXXXXX").string();
    if (!mkdtemp(home.data())) {
        return {};
    }
    setenv("HOME", home.c_str(), 1);
    setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
    unsetenv("XDG_DATA_HOME");
    unsetenv("XDG_CONFIG_HOME");
    std::filesystem::create_directories(home + "/.config/Kippo");
    std::ofstream{home + "/.config/Kippo/defaults.json"} << settings;
    return home;
}

/// An X server on a display of its own choice; its number is put into DISPLAY.
inline pid_t startServer() {
    int ends[2];
    if (pipe2(ends, 0) != 0) {
        return -1;
    }
    const pid_t server = start({"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0",
                                std::to_string(screenWidth) + "x900x24", "-nolisten", "tcp"});
    close(ends[1]);
    char number[16] = {};
    if (server > 0 && read(ends[0], number, sizeof number - 1) > 0) {
        setenv("DISPLAY", (":" + std::to_string(std::atoi(number))).c_str(), 1);
    }
    close(ends[0]);
    return server;
}

/// Gives the root window a colour: black on black would show nothing.
inline void paintRoot(xcb_connection_t* client, xcb_window_t root) {
    const std::uint32_t grey = 0x8090a0;
    xcb_change_window_attributes(client, root, XCB_CW_BACK_PIXEL, &grey);
    xcb_clear_area(client, 0, root, 0, 0, 0, 0);
    xcb_flush(client);
}

inline std::uint32_t pixel(xcb_connection_t* server, xcb_window_t root, std::int16_t x, std::int16_t y) {
    xcb_get_image_reply_t* image =
        xcb_get_image_reply(server, xcb_get_image(server, XCB_IMAGE_FORMAT_Z_PIXMAP, root, x, y, 1, 1, ~0U), nullptr);
    std::uint32_t value = 0;
    if (image) {
        const std::uint8_t* data = xcb_get_image_data(image);
        value = data[0] | static_cast<std::uint32_t>(data[1]) << 8U | static_cast<std::uint32_t>(data[2]) << 16U;
        std::free(image);
    }
    return value;
}

/// Milliseconds from `since` until the pixel is no longer `before`; nothing when it stays so for `patience`.
inline std::optional<double> untilChanged(xcb_connection_t* server, xcb_window_t root, std::int16_t x, std::int16_t y,
                                          std::uint32_t before, Clock::time_point since,
                                          std::chrono::milliseconds patience) {
    while (Clock::now() < since + patience) {
        if (pixel(server, root, x, y) != before) {
            return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
        }
        std::this_thread::sleep_for(std::chrono::microseconds{200});
    }
    return std::nullopt;
}

} // namespace bench
