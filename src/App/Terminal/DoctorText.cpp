#include "App/Terminal/Doctor.h"
#include "App/Terminal/JsonMembers.h"
#include "App/Terminal/TerminalText.h"
#include "Support/Text.h"

#include <algorithm>
#include <fmt/format.h>

namespace kippo::Terminal {

namespace {

using State = Check::State;

struct Mark {
    std::string_view text;
    Tone tone;
    std::string_view name; ///< in JSON
};

Mark markOf(State state) {
    switch (state) {
    case State::well:
        return {"✓", Tone::done, "well"};
    case State::aside:
        return {"–", Tone::faint, "aside"};
    case State::note:
        return {"!", Tone::needsYou, "note"};
    case State::ill:
        return {"✗", Tone::bad, "ill"};
    }
    return {};
}

/// `text` in lines of at most `width` columns, all but the first behind `indent` blanks; 0 is no limit.
std::string wrapped(std::string_view text, int indent, int width) {
    std::string result;
    int column = indent;
    for (const auto word : Text::split(text, ' ')) {
        const int columns = columnsOf(word);
        if (width > 0 && column > indent && column + 1 + columns > width) {
            result += "\n" + std::string(static_cast<std::size_t>(indent), ' ');
            column = indent;
        } else if (column > indent) {
            result += ' ';
            ++column;
        }
        result += word;
        column += columns;
    }
    return result;
}

std::string sumUp(std::size_t ills, std::size_t notes) {
    if (ills > 0) {
        return ills == 1 ? "One thing is not well." : fmt::format("{} things are not well.", ills);
    }
    return notes == 0 ? "All is well." : "All is well, but see what is marked with “!”.";
}

std::size_t countOf(const std::vector<Check>& checks, State state) {
    return static_cast<std::size_t>(std::ranges::count(checks, state, &Check::state));
}

} // namespace

std::string doctorText(const std::vector<Check>& checks, const Style& style) {
    std::string text;
    for (const auto& check : checks) {
        const auto [mark, tone, name] = markOf(check.state);
        const bool isPlain = check.state == State::well || check.state == State::aside;
        text += toned(mark, tone, style) + " " +
                toned(wrapped(plainText(check.sentence), 2, style.width),
                      check.state == State::aside ? Tone::faint : Tone::plain, style) +
                "\n";
        if (!isPlain && !check.remedy.empty()) {
            text += "  → " + wrapped(plainText(check.remedy), 4, style.width) + "\n";
        }
    }
    const auto ills = countOf(checks, State::ill);
    return text + "\n" + toned(sumUp(ills, countOf(checks, State::note)), ills > 0 ? Tone::bad : Tone::done, style) +
           "\n";
}

std::string doctorJson(const std::vector<Check>& checks) {
    std::string text;
    Json::Writer writer{text};
    writer.beginObject();
    JsonMembers members{writer};
    members.flag("well", countOf(checks, State::ill) == 0);
    members.list("checks", checks, [&](const Check& check) {
        writer.beginObject();
        members.text("id", check.id);
        members.text("state", markOf(check.state).name);
        members.text("sentence", check.sentence);
        members.text("remedy", check.remedy.empty() ? std::nullopt : std::optional<std::string_view>{check.remedy});
        writer.endObject();
    });
    writer.endObject();
    return text;
}

} // namespace kippo::Terminal
