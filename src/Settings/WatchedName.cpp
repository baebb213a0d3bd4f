#include "Settings/WatchedName.h"

#include "Agents/AgentModels.h"
#include "Support/Text.h"

#include <algorithm>

namespace kippo {

namespace {

std::string quoted(std::string_view name) { return "“" + std::string{name} + "”"; }

} // namespace

std::expected<std::string, std::string> watchedName(std::string_view typed, const std::vector<std::string>& watched) {
    const std::string_view trimmed = Text::trimmed(typed);
    const std::string_view name = Text::lastPathComponent(trimmed);
    if (name.empty() || name.find('/') != std::string_view::npos) {
        return std::unexpected{"Type the name of a program."};
    }
    if (name.find_first_of(" \t\r\n") != std::string_view::npos) {
        return std::unexpected{"Only the program's name, without what follows it."};
    }
    const auto isSame = [name](const std::string& other) { return Text::lowered(other) == Text::lowered(name); };
    if (std::ranges::any_of(watched, isSame)) {
        return std::unexpected{quoted(name) + " is on the list already."};
    }
    if (const auto known = classify(name, {})) {
        return std::unexpected{"Kippo follows " + quoted(name) + " already: it is " +
                               std::string{displayTitle(*known)} + "."};
    }
    return std::string{name};
}

} // namespace kippo
