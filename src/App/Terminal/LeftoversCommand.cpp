#include "App/Terminal/LeftoversCommand.h"

#include "Agents/LeftoverScanner.h"
#include "Agents/UsageScanner.h"
#include "App/Terminal/HookFacts.h"
#include "App/Terminal/LeftoversText.h"
#include "App/Terminal/Onlooker.h"
#include "App/Terminal/Output.h"
#include "App/Terminal/TerminalText.h"
#include "Platform/Linux/FreedesktopTrash.h"
#include "Platform/Posix/PosixProcessRunner.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <fmt/format.h>
#include <span>

namespace kippo::Terminal {

namespace {

/// Every folder that an agent worked in this week, as far as it is known.
std::set<std::string> projects(const Places& places, Onlooker& onlooker) {
    auto folders = UsageScanner{places.home}.refresh(onlooker.now()).projects;
    for (const auto& session : onlooker.look().sessions) {
        if (session.cwd) {
            folders.insert(*session.cwd);
        }
    }
    return folders;
}

std::vector<Leftover> scan(const Places& places) {
    const Progress progress{"Looking through the folders that agents worked in …"};
    Onlooker onlooker;
    PosixProcessRunner runner;
    return LeftoverScanner::scan(projects(places, onlooker),
                                 LeftoverScanner::globalCaches(places.home, places.cacheFolder), runner);
}

/// The whole path with links resolved; the word itself where nothing is there.
std::string resolved(const std::string& word) {
    char* path = realpath(word.c_str(), nullptr);
    std::string result = path != nullptr ? path : word;
    std::free(path);
    return result;
}

/// The listed folders that the words name; nothing when one of them is not listed.
std::optional<std::vector<Leftover>> chosen(std::span<const std::string_view> words,
                                            const std::vector<Leftover>& listed) {
    std::vector<Leftover> result;
    bool isAnyUnknown = false;
    for (const auto word : words) {
        const auto path = resolved(std::string{word});
        const auto found =
            std::ranges::find_if(listed, [&](const Leftover& one) { return resolved(one.path) == path; });
        if (found == listed.end()) {
            complain(fmt::format("kippo: “{}” is none of the folders that “kippo leftovers” lists.", plainText(word)));
            isAnyUnknown = true;
        } else if (std::ranges::find(result, *found) == result.end()) {
            result.push_back(*found);
        }
    }
    return isAnyUnknown ? std::nullopt : std::optional{std::move(result)};
}

int moveToTrash(const Places& places, const std::vector<Leftover>& leftovers) {
    FreedesktopTrash trash{places.dataFolder};
    int status = succeeded;
    for (const auto& leftover : leftovers) {
        if (const auto receipt = trash.moveToTrash(leftover.path)) {
            print(fmt::format("{} ({}) is in the Trash now.\n", plainText(tilde(leftover.path, places.home)),
                              Formatters::memory(leftover.sizeKB)));
        } else {
            complain("kippo: " + plainText(receipt.error().sentence));
            status = failed;
        }
    }
    return status;
}

} // namespace

int leftovers(const Request& request) {
    const bool moves = !request.words.empty() && request.words.front() == "trash";
    if (!request.words.empty() && !moves) {
        complain(unknownWord(request.words.front()));
        return usageError;
    }
    if (moves && (request.words.size() == 1 || request.has("--json"))) {
        complain("kippo: “trash” takes folders and nothing else. See “kippo leftovers --help”.");
        return usageError;
    }
    const auto places = Places::fromEnvironment();
    if (places.home.empty()) {
        complain(noHome);
        return failed;
    }
    const auto found = scan(places);
    if (moves) {
        // A mistyped word should not leave half of the others moved.
        const auto wanted = chosen(std::span{request.words}.subspan(1), found);
        return wanted ? moveToTrash(places, *wanted) : failed;
    }
    print(request.has("--json") ? leftoversJson(found) + "\n" : leftoversText(found, places.home, outputStyle()));
    return succeeded;
}

} // namespace kippo::Terminal
