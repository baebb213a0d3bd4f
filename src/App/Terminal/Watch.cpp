#include "App/Terminal/Watch.h"

#include "App/Terminal/Onlooker.h"
#include "App/Terminal/Screen.h"
#include "App/Terminal/Signals.h"
#include "App/Terminal/TerminalText.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <string>
#include <unistd.h>

namespace kippo::Terminal {

namespace {

constexpr Size usualSize{80, 24};

// Times in the rows grow older by the minute; a redraw that changes no character writes nothing.
constexpr Seconds redrawInterval{5};
constexpr Seconds redrawTolerance{1};

/// The list on a terminal's alternate screen.
class LiveScreen {
public:
    explicit LiveScreen(std::string_view notice) : notice_(notice) {}

    void run() {
        auto& scheduler = onlooker_.scheduler();
        const auto keys =
            isatty(STDIN_FILENO) == 1 ? scheduler.addDescriptor(STDIN_FILENO, [this] { readKeys(); }) : Subscription{};
        const auto signals = scheduler.addDescriptor(signals_.descriptor(), [this] { obeySignals(); });
        screen_.enter();
        onlooker_.follow([this] { redraw(); });
        const auto timer = scheduler.every(redrawInterval, redrawTolerance, [this] { redraw(); });
        redraw();
        scheduler.run();
        screen_.leave();
    }

private:
    void redraw() {
        const auto size = sizeOf(STDOUT_FILENO).value_or(usualSize);
        const Style style{.width = size.width, .colour = colour_};
        const auto table = sessionTable(onlooker_.list(), onlooker_.now(), style);
        const auto footer = fitted(notice_.empty() ? "q quits" : notice_ + " q quits", size.width);
        const auto frame = firstLines(table, std::max(size.height - 2, 0)) + "\n" + toned(footer, Tone::faint, style);
        if (!screen_.show(frame)) {
            onlooker_.scheduler().stop();
        }
    }

    void readKeys() {
        std::array<char, 64> keys{};
        const auto count = read(STDIN_FILENO, keys.data(), keys.size());
        const auto end = keys.begin() + std::max<ssize_t>(count, 0);
        constexpr char controlD = '\x04';
        const auto quits = [](char key) { return key == 'q' || key == 'Q' || key == controlD; };
        if (count <= 0 || std::any_of(keys.begin(), end, quits)) {
            onlooker_.scheduler().stop();
        }
    }

    void obeySignals() {
        for (const int signal : signals_.take()) {
            switch (signal) {
            case SIGWINCH:
                screen_.forget();
                redraw();
                break;
            case SIGTSTP:
                // The shell gets its terminal back as it was, and we ours when it lets us go on.
                screen_.leave();
                raise(SIGSTOP);
                screen_.enter();
                redraw();
                break;
            default:
                onlooker_.scheduler().stop();
            }
        }
    }

    std::string notice_;
    bool colour_ = wantsColour(STDOUT_FILENO);
    Onlooker onlooker_;
    Signals signals_{SIGINT, SIGTERM, SIGHUP, SIGWINCH, SIGTSTP};
    Screen screen_{STDIN_FILENO, STDOUT_FILENO};
};

} // namespace

int watchScreen(std::string_view notice) {
    LiveScreen{notice}.run();
    return 0;
}

int watchJson() {
    Onlooker onlooker;
    Signals signals{SIGINT, SIGTERM, SIGHUP};
    auto& scheduler = onlooker.scheduler();
    const auto ending = scheduler.addDescriptor(signals.descriptor(), [&] { scheduler.stop(); });
    std::string told;
    const auto tell = [&] {
        const auto list = onlooker.list();
        if (auto news = newsJson(list); news != told) {
            told = std::move(news);
            if (!writeAll(STDOUT_FILENO, sessionJson(list, onlooker.now()) + "\n")) {
                scheduler.stop();
            }
        }
    };
    onlooker.follow(tell);
    tell();
    // The reader may go away while there is nothing to tell.
    const auto reader =
        isPipe(STDOUT_FILENO) ? scheduler.addDescriptor(STDOUT_FILENO, [&] { scheduler.stop(); }) : Subscription{};
    scheduler.run();
    return 0;
}

} // namespace kippo::Terminal
