#include "App/Terminal/Commands.h"

#include "App/Terminal/Arguments.h"
#include "App/Terminal/Completion.h"
#include "App/Terminal/DoctorCommand.h"
#include "App/Terminal/HooksCommand.h"
#include "App/Terminal/LeftoversCommand.h"
#include "App/Terminal/Onlooker.h"
#include "App/Terminal/Output.h"
#include "App/Terminal/PanelCommands.h"
#include "App/Terminal/UsageCommand.h"
#include "App/Terminal/Watch.h"
#include "Platform/Linux/Installation.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace kippo::Terminal {

namespace {

constexpr std::string_view noDisplay = "There is no display here, so this is the list in place of the panel.";
constexpr std::string_view noApplication = "The panel is not installed, so this is the list in its place.";

/// Becomes the application; returns only when that fails.
void becomeApplication(const std::string& path, std::span<char* const> arguments) {
    std::vector<char*> words{arguments.begin(), arguments.end()};
    std::string name = path;
    words.resize(std::max<std::size_t>(words.size(), 1));
    words.front() = name.data();
    words.push_back(nullptr);
    execv(path.c_str(), words.data());
}

int status(const Request& request) {
    Onlooker onlooker;
    const auto list = onlooker.look();
    print(request.has("--json") ? sessionJson(list, onlooker.now()) + "\n"
                                : sessionTable(list, onlooker.now(), outputStyle()));
    return succeeded;
}

int watch(const Request& request) {
    if (request.has("--json")) {
        return watchJson();
    }
    // Without a screen to redraw there is nothing to keep current.
    return isatty(STDOUT_FILENO) == 1 ? watchScreen({}) : status(request);
}

constexpr Command commands[] = {
    {.name = "status",
     .options = "--json",
     .usage = "  kippo status           print the list once\n"
              "  kippo status --json    the same as one JSON object\n",
     .run = status},
    {.name = "watch",
     .options = "--json",
     .usage = "  kippo watch            keep the list current in this terminal; q quits\n"
              "  kippo watch --json     one JSON object a line, at each change; for status bars\n",
     .run = watch},
    {.name = "hooks",
     .options = "--json --dry-run",
     .takesWords = true,
     .usage = "  kippo hooks            which agents report here; install, remove: see “kippo hooks --help”\n",
     .help = hooksHelp,
     .run = hooks},
    {.name = "usage",
     .options = "--json",
     .usage = "  kippo usage            Claude Code's tokens and their cost: today, five hours, the week\n"
              "  kippo usage --json     the same as one JSON object\n",
     .run = usage},
    {.name = "leftovers",
     .options = "--json",
     .takesWords = true,
     .usage =
         "  kippo leftovers        big folders that agents' work left behind; trash: see “kippo leftovers --help”\n",
     .help = leftoversHelp,
     .run = leftovers},
    {.name = "open",
     .takesWords = true,
     .usage = "  kippo open PAGE        open the panel, or the settings: see “kippo open --help”\n",
     .help = openHelp,
     .run = open},
    {.name = "focus",
     .options = "--json",
     .takesWords = true,
     .usage = "  kippo focus            the focus timer; start, pause, skip …: see “kippo focus --help”\n",
     .help = focusHelp,
     .run = focus},
    {.name = "doctor",
     .options = "--json",
     .usage = "  kippo doctor           look for whatever may keep Kippo from working, and say what to do\n",
     .run = doctor},
};

/// The list in this terminal, or once where the output goes elsewhere; `why` says why there is no panel.
int listInstead(std::string_view why) {
    if (isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1) {
        return watchScreen(why);
    }
    complain(why);
    return status({});
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
    return failed;
}

} // namespace

int run(std::span<char* const> arguments) {
    if (arguments.size() > 1 && arguments[1] == completionFlag) {
        print(completions(std::vector<std::string_view>{arguments.begin() + 2, arguments.end()}, commands));
        return succeeded;
    }
    const auto parsed = parseArguments(arguments, commands);
    switch (parsed.kind) {
    case Arguments::Kind::start:
        return start(arguments);
    case Arguments::Kind::application:
        return application(arguments);
    case Arguments::Kind::command:
        return parsed.command->run(parsed.request);
    case Arguments::Kind::help:
        print(parsed.command != nullptr ? std::string{parsed.command->help} : helpText(commands));
        return succeeded;
    case Arguments::Kind::version:
        print(versionText());
        return succeeded;
    case Arguments::Kind::wrong:
        complain(parsed.complaint);
        return usageError;
    }
    return usageError;
}

} // namespace kippo::Terminal
