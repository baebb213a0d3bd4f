#include "App/Terminal/PanelCommands.h"

#include "App/Terminal/FocusText.h"
#include "App/Terminal/Output.h"
#include "App/Terminal/TerminalText.h"
#include "Platform/Linux/SessionBus.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <expected>
#include <optional>

namespace kippo::Terminal {

namespace {

constexpr std::string_view ownErrors = "io.github.kippo.Kippo.Error.";
constexpr std::string_view notRunning = "Kippo is not running. Start it with “kippo”.";
constexpr std::string_view noBus = "kippo: No session bus answers here, so a running Kippo cannot be reached.";
constexpr std::string_view noAnswer = "kippo: Kippo runs, but does not answer.";
constexpr std::string_view stranger = "kippo: The Kippo that runs is another version. End it and start it again.";

constexpr std::array<std::string_view, 8> verbs{"state",  "start",  "break", "pause",
                                                "resume", "toggle", "skip",  "reset"};

std::string sentence(const SessionBus::Error& error) {
    switch (error.failure) {
    case SessionBus::Failure::noBus:
        return std::string{noBus};
    case SessionBus::Failure::nobody:
        return std::string{notRunning};
    case SessionBus::Failure::noAnswer:
        return std::string{noAnswer};
    case SessionBus::Failure::error:
        break;
    }
    return error.name.starts_with(ownErrors) ? plainText(error.message) : std::string{stranger};
}

/// Calls the running application; what it answers, or a sentence for the user.
std::expected<std::string, std::string> ask(std::string member,
                                            std::vector<std::variant<std::string, std::int32_t>> arguments) {
    auto bus = SessionBus::connect(SessionBus::addresses());
    if (!bus) {
        return std::unexpected{sentence(bus.error())};
    }
    auto answer = bus->call({.destination = "io.github.kippo.Kippo",
                             .path = "/io/github/kippo/Kippo",
                             .interface = "io.github.kippo.Kippo",
                             .member = std::move(member),
                             .arguments = std::move(arguments)});
    if (!answer) {
        return std::unexpected{sentence(answer.error())};
    }
    return *std::move(answer);
}

int complaintAbout(std::string_view word) {
    complain(unknownWord(word));
    return usageError;
}

/// The minutes that were typed; nothing for what is no number of them.
std::optional<int> minutesFrom(std::string_view word) {
    int minutes = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), minutes);
    return error == std::errc{} && end == word.data() + word.size() && minutes > 0 ? std::optional{minutes}
                                                                                   : std::nullopt;
}

} // namespace

int open(const Request& request) {
    const auto& words = request.words;
    if (words.empty()) {
        complain("kippo: “open” wants a page, such as “kippo open agents”. See “kippo open --help”.");
        return usageError;
    }
    const bool opensSettings = words.front() == "settings";
    if (words.size() > (opensSettings ? 2U : 1U)) {
        return complaintAbout(words.back());
    }
    const std::string page{opensSettings && words.size() == 1 ? std::string_view{} : words.back()};
    const auto answer = ask(opensSettings ? "OpenSettings" : "OpenPage", {page});
    if (!answer) {
        complain(answer.error());
        return failed;
    }
    return succeeded;
}

int focus(const Request& request) {
    const auto& words = request.words;
    const std::string_view verb = words.empty() ? verbs.front() : words.front();
    if (std::ranges::find(verbs, verb) == verbs.end()) {
        return complaintAbout(verb);
    }
    const bool hasMinutes = verb == "start" && words.size() == 2;
    if (words.size() > 1 && !hasMinutes) {
        return complaintAbout(words.back());
    }
    const auto minutes = hasMinutes ? minutesFrom(words.back()) : std::optional{0};
    if (!minutes) {
        complain("kippo: “" + plainText(words.back()) + "” is no number of minutes.");
        return usageError;
    }
    const auto answer = ask("Focus", {std::string{verb}, *minutes});
    const auto text = answer && !request.has("--json") ? focusText(*answer) : std::optional{answer.value_or("") + "\n"};
    if (!answer || !text) {
        complain(answer ? std::string{stranger} : answer.error());
        return failed;
    }
    print(*text);
    return succeeded;
}

} // namespace kippo::Terminal
