#include "Settings/FoundAgents.h"

#include <filesystem>
#include <ranges>

namespace kippo {

namespace {

std::string_view program(HookAgent agent) {
    switch (agent) {
    case HookAgent::claude:
        return "claude";
    case HookAgent::codex:
        return "codex";
    case HookAgent::cursor:
        return "cursor-agent";
    case HookAgent::gemini:
        return "gemini";
    }
    return {};
}

bool isInSearchPath(std::string_view name, std::string_view searchPath) {
    for (const auto folder : std::views::split(searchPath, ':')) {
        std::error_code unreadable;
        if (!folder.empty() &&
            std::filesystem::is_regular_file(std::filesystem::path{std::string_view{folder}} / name, unreadable)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool isOnMachine(HookAgent agent, const std::string& home, std::string_view searchPath) {
    const std::filesystem::path settings = std::filesystem::path{home} / settingsPath(agent);
    std::error_code unreadable;
    return std::filesystem::is_directory(settings.parent_path(), unreadable) ||
           isInSearchPath(program(agent), searchPath);
}

} // namespace kippo
