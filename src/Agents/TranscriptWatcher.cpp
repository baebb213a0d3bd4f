#include "Agents/TranscriptWatcher.h"

#include "Support/InputFile.h"
#include "Support/LocalTime.h"
#include "Support/Text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <functional>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace kippo {

namespace {

using State = TranscriptWatcher::State;

constexpr std::string_view extension = ".jsonl";

/// A Codex file opens with a line on its session that holds the whole system prompt; today's is 25 KB. Gemini CLI's
/// opens with a short one.
constexpr std::size_t headBytes = 65536;
/// No path is longer.
constexpr std::size_t pathBytes = 4096;

/// Calls `entry(name)` for everything in the folder but "." and ".."; a folder that cannot be read is empty.
void forEachEntry(const std::string& folder, const std::function<void(std::string_view name)>& entry) {
    const auto close = [](DIR* open) { ::closedir(open); };
    const std::unique_ptr<DIR, decltype(close)> directory(::opendir(folder.c_str()), close);
    if (!directory) {
        return;
    }
    while (const auto* item = ::readdir(directory.get())) {
        const std::string_view name = item->d_name;
        if (name != "." && name != "..") {
            entry(name);
        }
    }
}

/// Up to `size` bytes from `offset`, in `into`; false when reading failed.
bool readAt(int file, std::uint64_t offset, std::size_t size, std::string& into) {
    into.resize(size);
    std::size_t have = 0;
    while (have < size) {
        const auto got = ::pread(file, into.data() + have, size - have, static_cast<off_t>(offset + have));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return false;
        }
        if (got == 0) {
            break;
        }
        have += static_cast<std::size_t>(got);
    }
    into.resize(have);
    return true;
}

/// The lines of `bytes`, empty ones dropped.
void splitLines(std::string_view bytes, std::vector<std::string_view>& lines) {
    lines.clear();
    while (!bytes.empty()) {
        const auto* const feed = static_cast<const char*>(std::memchr(bytes.data(), '\n', bytes.size()));
        const auto length = feed ? static_cast<std::size_t>(feed - bytes.data()) : bytes.size();
        if (length > 0) {
            lines.push_back(bytes.substr(0, length));
        }
        bytes.remove_prefix(std::min(length + 1, bytes.size()));
    }
}

/// How a patch that holds Gemini's whole history ends. It may be longer than the tail.
constexpr std::string_view historyEnd = R"(],"lastUpdated":")";

bool endsHistory(std::string_view cutLine) {
    const auto at = cutLine.rfind(historyEnd);
    return at != std::string_view::npos && cutLine.size() - at < 64 && cutLine.ends_with(R"("}})");
}

TranscriptWatcher::Parser parserOf(AgentKind agent) {
    switch (agent) {
    case AgentKind::codex:
        return TranscriptWatcher::parseCodex;
    case AgentKind::gemini:
        return TranscriptWatcher::parseGemini;
    default:
        return TranscriptWatcher::parseClaude;
    }
}

std::string_view nameWithoutExtension(std::string_view path) {
    auto name = Text::lastPathComponent(path);
    name.remove_suffix(std::min(extension.size(), name.size()));
    return name;
}

/// "2026/11/21", `offset` local days from `now`.
std::string dayFolder(Date now, int offset) {
    const LocalTime day = localTime(startOfLocalDay(now, offset));
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%04d/%02d/%02d", day.year, day.month, day.day);
    return text.data();
}

/// A finished turn stays what it was settled as while nothing that concerns the turn was written since.
void keepSettled(const std::optional<State>& before, State& now) {
    using Case = State::Phase::Case;
    if (before && before->pendingDone && now.pendingDone && before->phase.value != Case::working &&
        now.phase.value == Case::working && before->phaseSince == now.phaseSince) {
        now.phase = before->phase;
    }
}

/// What the start of the file says and its tail does not.
void addOrigin(State& state, const State& origin, std::string_view fallbackID) {
    if (state.session != fallbackID) {
        return;
    }
    state.session = origin.session;
    state.cwd = state.cwd ? state.cwd : origin.cwd;
    state.interactive = origin.interactive;
    state.isSubagent = origin.isSubagent;
    state.startedAt = origin.startedAt;
}

void settle(State& state, Date now) {
    using Case = State::Phase::Case;
    if (state.phase.value != Case::working || !state.pendingDone ||
        now - state.lastActivity <= TranscriptWatcher::settleDelay) {
        return;
    }
    state.phase =
        state.markerNeedsYou ? State::Phase{Case::needsYou, *state.markerNeedsYou} : State::Phase{Case::done, {}};
}

} // namespace

/// What one walk of the folders kept.
struct TranscriptWatcher::Found {
    Date now;
    std::vector<std::pair<std::string, AgentKind>> files;

    /// Keeps a regular file that was written lately.
    void consider(std::string path, AgentKind agent) {
        struct stat info{};
        if (::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && now - modified(info) < activeWindow) {
            files.emplace_back(std::move(path), agent);
        }
    }
};

TranscriptWatcher::TranscriptWatcher(std::string home) : home_(std::move(home)) {}

std::vector<TranscriptWatcher::State> TranscriptWatcher::poll(Date now) {
    // A clock that was set back must not put the next walk off for long.
    if (now - lastDiscovery_ > discoveryInterval || now < lastDiscovery_) {
        lastDiscovery_ = now;
        discover(now);
    }
    std::vector<State> states;
    states.reserve(watched_.size());
    for (auto entry = watched_.begin(); entry != watched_.end();) {
        auto& [path, watched] = *entry;
        if (!refresh(path, watched)) {
            entry = watched_.erase(entry);
            continue;
        }
        if (watched.state) {
            if (subagentWrites(*watched.state, path)) {
                watched.state->phase = {};
                watched.state->pendingDone = false;
                watched.state->openCall.reset();
            }
            settle(*watched.state, now);
            states.push_back(*watched.state);
        }
        ++entry;
    }
    return states;
}

std::vector<std::string> TranscriptWatcher::watchedPaths() const {
    std::vector<std::string> paths;
    paths.reserve(watched_.size());
    for (const auto& [path, watched] : watched_) {
        paths.push_back(path);
    }
    return paths;
}

void TranscriptWatcher::discover(Date now) {
    Found found{now, {}};
    discoverClaude(found);
    discoverCodex(found);
    discoverGemini(found);
    std::map<std::string, Watched> kept;
    for (auto& [path, agent] : found.files) {
        if (auto known = watched_.extract(path)) {
            kept.insert(std::move(known));
        } else {
            kept[path].agent = agent;
        }
    }
    watched_ = std::move(kept);
}

void TranscriptWatcher::discoverClaude(Found& found) const {
    const std::string projects = home_ + "/.claude/projects";
    forEachEntry(projects, [&](std::string_view project) {
        const std::string folder = projects + "/" + std::string{project};
        forEachEntry(folder, [&](std::string_view name) {
            if (name.size() > extension.size() && name.ends_with(extension)) {
                found.consider(folder + "/" + std::string{name}, AgentKind::claude);
            }
        });
    });
}

void TranscriptWatcher::discoverCodex(Found& found) const {
    for (const int offset : {0, -1}) {
        const std::string folder = home_ + "/.codex/sessions/" + dayFolder(found.now, offset);
        forEachEntry(folder, [&](std::string_view name) {
            if (name.starts_with("rollout-") && name.ends_with(extension)) {
                found.consider(folder + "/" + std::string{name}, AgentKind::codex);
            }
        });
    }
}

void TranscriptWatcher::discoverGemini(Found& found) const {
    const std::string projects = home_ + "/.gemini/tmp";
    forEachEntry(projects, [&](std::string_view project) {
        const std::string folder = projects + "/" + std::string{project} + "/chats";
        forEachEntry(folder, [&](std::string_view name) {
            if (name.starts_with("session-") && name.ends_with(extension)) {
                found.consider(folder + "/" + std::string{name}, AgentKind::gemini);
            }
        });
    });
}

bool TranscriptWatcher::refresh(const std::string& path, Watched& watched) {
    struct stat info{};
    if (::stat(path.c_str(), &info) != 0) {
        return false;
    }
    const auto size = static_cast<std::uint64_t>(info.st_size);
    const auto inode = static_cast<std::uint64_t>(info.st_ino);
    const bool replaced = watched.inode != 0 && watched.inode != inode;
    if (!S_ISREG(info.st_mode) || (size == watched.size && !replaced)) {
        return S_ISREG(info.st_mode);
    }
    if (replaced || size < watched.size) {
        watched.origin.reset();
    }
    watched.size = size;
    watched.inode = inode;
    const InputFile file{path};
    auto state = file.descriptor() < 0 ? std::nullopt : read(path, file.descriptor(), watched);
    if (state) {
        keepSettled(watched.state, *state);
    }
    watched.state = std::move(state);
    return true;
}

std::optional<TranscriptWatcher::State> TranscriptWatcher::read(const std::string& path, int file, Watched& watched) {
    // The size as it is now: what was written since the look at the folder must not be read twice.
    struct stat info{};
    if (::fstat(file, &info) != 0 || !S_ISREG(info.st_mode)) {
        return std::nullopt;
    }
    watched.size = static_cast<std::uint64_t>(info.st_size);
    const auto parse = parserOf(watched.agent);
    const auto id = nameWithoutExtension(path);
    const bool whole = watched.size <= tailBytes;
    if (watched.agent != AgentKind::claude && !whole && !watched.origin && readAt(file, 0, headBytes, tail_)) {
        const std::string_view first = std::string_view{tail_}.substr(0, tail_.find('\n'));
        watched.origin = parse(std::span{&first, 1}, id, modified(info));
    }
    if (!readTail(file, watched)) {
        return std::nullopt;
    }
    auto state = parse(lines_, id, modified(info));
    if (state && whole && state->phaseSince == distantPast) {
        // Opened, and nothing asked yet: there is nothing to tell of the session.
        return std::nullopt;
    }
    if (state && !whole && watched.origin) {
        addOrigin(*state, *watched.origin, id);
    }
    if (state && watched.agent == AgentKind::gemini) {
        completeGemini(*state, path, watched);
    }
    return state;
}

bool TranscriptWatcher::readTail(int file, const Watched& watched) {
    const bool whole = watched.size <= tailBytes;
    const auto wanted = static_cast<std::size_t>(whole ? watched.size : tailBytes);
    if (!readAt(file, watched.size - wanted, wanted, tail_)) {
        return false;
    }
    std::string_view bytes = tail_;
    std::string_view cut;
    if (!whole) {
        cut = bytes.substr(0, bytes.find('\n'));
        bytes.remove_prefix(std::min(cut.size() + 1, bytes.size()));
    }
    splitLines(bytes, lines_);
    if (watched.agent == AgentKind::gemini && endsHistory(cut)) {
        cutPatch_ = R"({"$set":{"messages":[)" + std::string{cut.substr(cut.rfind(historyEnd))};
        lines_.insert(lines_.begin(), cutPatch_);
    }
    return true;
}

bool TranscriptWatcher::subagentWrites(const State& state, const std::string& path) {
    // Gemini CLI keeps the chats of sub-agents in a folder named after the session, and nothing else tells of them.
    if (state.agent != AgentKind::gemini || !state.pendingDone || !state.openCall || state.session.contains('/')) {
        return false;
    }
    const std::string folder = path.substr(0, path.rfind('/') + 1) + state.session;
    bool writes = false;
    forEachEntry(folder, [&](std::string_view name) {
        struct stat info{};
        writes = writes || (::stat((folder + "/" + std::string{name}).c_str(), &info) == 0 &&
                            modified(info) > state.openCall->since);
    });
    return writes;
}

void TranscriptWatcher::completeGemini(State& state, const std::string& path, Watched& watched) {
    if (!watched.project) {
        const InputFile file{path.substr(0, path.rfind("/chats/")) + "/.project_root"};
        std::string root;
        watched.project = file.descriptor() >= 0 && readAt(file.descriptor(), 0, pathBytes, root)
                              ? Text::validUtf8(Text::trimmed(root))
                              : std::string{};
    }
    if (watched.project->starts_with('/')) {
        state.cwd = watched.project;
    }
    if (watched.state && watched.state->session == state.session && watched.size > tailBytes) {
        const State& before = *watched.state;
        state.prompt = state.prompt ? state.prompt : before.prompt;
        state.cwd = state.cwd ? state.cwd : before.cwd;
        state.tokens.reset();
    }
}

} // namespace kippo
