#include "Focus/FocusCommands.h"

#include "Focus/FocusCountdown.h"
#include "Support/Json.h"

namespace kippo::FocusCommands {

namespace {

using Phase = FocusStore::Phase;

/// A day, as in the settings.
constexpr int mostMinutes = 24 * 60;

std::string_view nameOf(Phase phase) {
    switch (phase) {
    case Phase::focus:
        return "focus";
    case Phase::shortBreak:
        return "shortBreak";
    case Phase::longBreak:
        return "longBreak";
    case Phase::idle:
        break;
    }
    return "idle";
}

void start(FocusStore& focus, int minutes) {
    if (minutes != 0) {
        focus.begin(Phase::focus, minutes);
    } else if (focus.phase() == Phase::focus) {
        focus.resume();
    } else {
        focus.begin(Phase::focus, focus.focusMinutes());
    }
}

/// What is wrong with the command as things stand; empty for nothing.
std::string_view objection(const FocusStore& focus, std::string_view command, int minutes) {
    if (minutes < 0 || minutes > mostMinutes) {
        return "A focus lasts 1 to 1440 minutes.";
    }
    if (focus.phase() != Phase::idle) {
        return {};
    }
    if (command == "pause" || command == "skip") {
        return "Nothing runs. “kippo focus start” begins a focus.";
    }
    return command == "resume" ? "Nothing is paused. “kippo focus start” begins a focus." : "";
}

} // namespace

std::expected<std::string, std::string> run(FocusStore& focus, Date now, std::string_view command, int minutes) {
    if (const auto wrong = objection(focus, command, minutes); !wrong.empty()) {
        return std::unexpected{std::string{wrong}};
    }
    if (command == "start") {
        start(focus, minutes);
    } else if (command == "break") {
        focus.startBreak();
    } else if (command == "pause") {
        focus.pause();
    } else if (command == "resume") {
        focus.resume();
    } else if (command == "toggle") {
        focus.toggle();
    } else if (command == "skip") {
        focus.skip();
    } else if (command == "reset") {
        focus.reset();
    } else if (command != "state") {
        return std::unexpected{"This Kippo knows no “" + std::string{command} + "” of the focus timer."};
    }
    return json(focus, now);
}

std::string json(const FocusStore& focus, Date now) {
    const Seconds left = focus.remaining(now);
    std::string text;
    Json::Writer writer{text};
    writer.beginObject().key("phase").string(nameOf(focus.phase()));
    writer.key("running").boolean(focus.isRunning()).key("paused").boolean(focus.isPaused());
    writer.key("remaining").number(left.count()).key("total").number(focus.total().count());
    writer.key("clock").string(FocusCountdown::clockText(left)).key("endsAt");
    focus.endsAt() ? writer.number(unixSeconds(*focus.endsAt())) : writer.null();
    writer.key("completedToday").number(std::int64_t{focus.completedToday()});
    writer.key("headline").string(focus.headline()).key("subline").string(focus.subline()).endObject();
    return text;
}

} // namespace kippo::FocusCommands
