#include "App/Terminal/Commands.h"

#include "App/Terminal/Arguments.h"
#include "App/Terminal/Onlooker.h"
#include "App/Terminal/Screen.h"
#include "App/Terminal/Watch.h"
#include "Platform/Linux/Installation.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace kippo::Terminal {

namespace {

constexpr int usageError = 2;
constexpr int cannotStart = 1;

constexpr std::string_view noDisplay = "There is no display here, so this is the list in place of the panel.";
constexpr std::string_view noApplication = "The panel is not installed, so this is the list in its place.";

void complain(std::string_view line) { writeAll(STDERR_FILENO, std::string{line} + "\n"); }

/// Becomes the application; returns only when that fails.
void becomeApplication(const std::string& path, std::span<char* const> arguments) {
    std::vector<char*> words{arguments.begin(), arguments.end()};
    std::string name = path;
    words.resize(std::max<std::size_t>(words.size(), 1));
    words.front() = name.data();
    words.push_back(nullptr);
    execv(path.c_str(), words.data());
}

int status(bool json) {
    Onlooker onlooker;
    const auto list = onlooker.look();
    if (json) {
        writeAll(STDOUT_FILENO, sessionJson(list, onlooker.now()) + "\n");
    } else {
        const auto size = sizeOf(STDOUT_FILENO);
        writeAll(STDOUT_FILENO, sessionTable(list, onlooker.now(),
                                             {.width = size ? size->width : 0, .colour = wantsColour(STDOUT_FILENO)}));
    }
    return 0;
}

/// The list in this terminal, or once where the output goes elsewhere; `why` says why there is no panel.
int listInstead(std::string_view why) {
    if (isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1) {
        return watchScreen(why);
    }
    complain(why);
    return status(false);
}

int start(std::span<char* const> arguments) {
    if (!Installation::hasDisplay()) {
        return listInstead(noDisplay);
    }
    if (const auto path = Installation::applicationPath(KIPPO_INSTALLED_APP)) {
        becomeApplication(*path, arguments);
    }
    return listInstead(noApplication);
}

/// Flags that only the application knows; it says itself what it makes of them.
int application(std::span<char* const> arguments) {
    const auto path = Installation::applicationPath(KIPPO_INSTALLED_APP);
    if (path) {
        becomeApplication(*path, arguments);
    }
    complain("kippo: the panel is not installed, and only it knows these flags. See “kippo --help”.");
    return cannotStart;
}

int watch(bool json) {
    if (json) {
        return watchJson();
    }
    // Without a screen to redraw there is nothing to keep current.
    return isatty(STDOUT_FILENO) == 1 ? watchScreen({}) : status(false);
}

} // namespace

int run(std::span<char* const> arguments) {
    const auto parsed = parseArguments(arguments);
    switch (parsed.command) {
    case Arguments::Command::start:
        return start(arguments);
    case Arguments::Command::application:
        return application(arguments);
    case Arguments::Command::status:
        return status(parsed.json);
    case Arguments::Command::watch:
        return watch(parsed.json);
    case Arguments::Command::help:
        writeAll(STDOUT_FILENO, helpText());
        return 0;
    case Arguments::Command::version:
        writeAll(STDOUT_FILENO, versionText());
        return 0;
    case Arguments::Command::wrong:
        complain(parsed.complaint);
        return usageError;
    }
    return usageError;
}

} // namespace kippo::Terminal
