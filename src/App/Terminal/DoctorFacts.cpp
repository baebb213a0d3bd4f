#include "App/Terminal/CodexHooks.h"
#include "App/Terminal/Doctor.h"
#include "Platform/Linux/Desktop.h"
#include "Platform/Linux/Installation.h"
#include "Platform/Linux/JsonUserDefaults.h"
#include "Platform/Linux/ProcProcessLister.h"
#include "Platform/Posix/PosixProcessRunner.h"
#include "Platform/Posix/PosixUserFiles.h"
#include "Support/JsonTree.h"
#include "Support/Places.h"
#include "Support/Text.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <memory>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace kippo::Terminal {

namespace {

using CodexTrust = DoctorFacts::CodexTrust;

constexpr Seconds patience{3};

/// The whole tree of a JSON file; nothing where there is none.
std::optional<Json::Node> jsonFile(UserFiles& files, const std::string& path) {
    const auto text = files.read(path);
    return text && *text ? Json::tree(**text, [](const Json::Node&, std::size_t) { return true; }) : std::nullopt;
}

std::string textFile(UserFiles& files, const std::string& path) {
    auto text = files.read(path);
    return text && *text ? std::move(**text) : std::string{};
}

std::string realPath(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> real{realpath(path.c_str(), nullptr), std::free};
    return real ? real.get() : path;
}

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string parentOf(const std::string& path) { return path.substr(0, path.find_last_of('/')); }

std::optional<Date> modificationDate(const std::string& path) {
    struct stat state{};
    if (stat(path.c_str(), &state) != 0) {
        return std::nullopt;
    }
    return dateFromUnix(static_cast<double>(state.st_mtim.tv_sec) + static_cast<double>(state.st_mtim.tv_nsec) / 1e9);
}

/// The date of the file that was written last among those of `suffix`, at most `depth` folders below `folder`.
std::optional<Date> newestFile(const std::string& folder, std::string_view suffix, int depth) {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries{opendir(folder.c_str()), closedir};
    std::optional<Date> newest;
    for (const dirent* entry = nullptr; entries && (entry = readdir(entries.get())) != nullptr;) {
        const std::string_view name = entry->d_name;
        if (name.starts_with('.')) {
            continue;
        }
        const auto path = fmt::format("{}/{}", folder, name);
        const auto date = name.ends_with(suffix)                 ? modificationDate(path)
                          : depth > 0 && entry->d_type == DT_DIR ? newestFile(path, suffix, depth - 1)
                                                                 : std::nullopt;
        newest = date && newest ? std::max(date, newest) : date ? date : newest;
    }
    return newest;
}

/// What a program's version can be read from without running it: its package, or the name of the file.
std::string versionOf(UserFiles& files, const std::string& program) {
    const auto path = realPath(program);
    const auto name = Text::lastPathComponent(path);
    if (!name.empty() && name.find_first_not_of("0123456789.") == std::string_view::npos) {
        return std::string{name};
    }
    constexpr int foldersToPackage = 3;
    auto folder = parentOf(path);
    for (int step = 0; step < foldersToPackage && !folder.empty(); ++step, folder = parentOf(folder)) {
        if (const auto package = jsonFile(files, folder + "/package.json")) {
            const auto* version = package->member("version");
            return version != nullptr && version->kind == Json::Kind::string ? version->text : std::string{};
        }
    }
    return {};
}

bool isLiteral(const Json::Node* node, std::string_view literal) {
    return node != nullptr && node->kind == Json::Kind::boolean && node->text == literal;
}

bool areHooksOff(UserFiles& files, const std::string& home, const HookFacts& hooks) {
    if (hooks.agent == HookAgent::codex) {
        return CodexHooks::areHooksOff(textFile(files, home + "/.codex/config.toml"));
    }
    const auto settings = jsonFile(files, hooks.file);
    if (!settings) {
        return false;
    }
    const auto* gemini = settings->member("hooksConfig");
    return (hooks.agent == HookAgent::claude && isLiteral(settings->member("disableAllHooks"), "true")) ||
           (hooks.agent == HookAgent::gemini && gemini != nullptr && isLiteral(gemini->member("enabled"), "false"));
}

/// Where the agent keeps its settings by the environment's word, when that is not the usual folder.
std::string otherHome(const HookFacts& hooks) {
    const auto folder = hooks.agent == HookAgent::claude  ? variable("CLAUDE_CONFIG_DIR")
                        : hooks.agent == HookAgent::codex ? variable("CODEX_HOME")
                                                          : std::string{};
    return folder.empty() || realPath(folder) == realPath(parentOf(hooks.file)) ? std::string{} : folder;
}

/// The folder of an agent's transcripts, and how deep in it they lie; nothing for an agent without any that Kippo
/// reads.
struct Transcripts {
    std::string folder;
    int depth = 0;
};
std::optional<Transcripts> transcripts(HookAgent agent, const std::string& home) {
    switch (agent) {
    case HookAgent::claude:
        return Transcripts{home + "/.claude/projects", 1};
    case HookAgent::codex:
        return Transcripts{home + "/.codex/sessions", 3};
    case HookAgent::gemini:
        return Transcripts{home + "/.gemini/tmp", 2};
    case HookAgent::cursor:
        break;
    }
    return std::nullopt;
}

DoctorFacts::Agent agentFacts(UserFiles& files, const std::string& home, HookFacts hooks) {
    DoctorFacts::Agent agent;
    agent.version = hooks.program ? versionOf(files, *hooks.program) : std::string{};
    agent.areHooksOff = areHooksOff(files, home, hooks);
    agent.otherHome = otherHome(hooks);
    agent.settingsWritten = modificationDate(hooks.file);
    if (const auto found = transcripts(hooks.agent, home)) {
        agent.transcriptWritten = newestFile(found->folder, ".jsonl", found->depth);
        if (access(found->folder.c_str(), F_OK) == 0 && access(found->folder.c_str(), R_OK | X_OK) != 0) {
            agent.unreadableTranscripts = found->folder;
        }
    }
    agent.hooks = std::move(hooks);
    return agent;
}

/// The SHA-256 of each text, in hexadecimal digits; nothing where the system has no program for it.
std::optional<std::vector<std::string>> hashes(ProcessRunner& runner, const std::vector<std::string>& texts) {
    std::vector<std::string> arguments{"-c", R"(for text; do printf %s "$text" | sha256sum; done)", "sh"};
    arguments.insert(arguments.end(), texts.begin(), texts.end());
    const auto output = runner.output("/bin/sh", arguments, patience).value_or(std::string{});
    std::vector<std::string> result;
    for (const auto line : Text::split(output, '\n')) {
        result.emplace_back(line.substr(0, line.find(' ')));
    }
    return result.size() == texts.size() ? std::optional{std::move(result)} : std::nullopt;
}

CodexTrust codexTrust(UserFiles& files, ProcessRunner& runner, const HookFacts& hooks) {
    const auto entries = CodexHooks::entries(textFile(files, hooks.file));
    const auto config = textFile(files, parentOf(hooks.file) + "/config.toml");
    std::vector<std::string> identities;
    std::vector<std::string> trusted;
    for (const auto& entry : entries) {
        // Codex resolves links in its folder's path when the environment names the folder.
        auto record = CodexHooks::record(config, hooks.file + entry.place);
        if (!record.trustedHash) {
            const auto key = realPath(parentOf(hooks.file)) + "/hooks.json" + entry.place;
            record = CodexHooks::record(config, key);
        }
        if (!record.trustedHash) {
            return CodexTrust::untrusted;
        }
        if (record.isDisabled) {
            return CodexTrust::disabled;
        }
        if (!entry.identity.empty()) {
            identities.push_back(entry.identity);
            trusted.push_back(*record.trustedHash);
        }
    }
    const auto now = hashes(runner, identities);
    if (!now || entries.empty()) {
        return CodexTrust::unknown;
    }
    return *now == trusted ? CodexTrust::trusted : CodexTrust::changed;
}

/// What keeps the user from writing `path`, or from making it where it is not there yet; empty when nothing does.
std::string obstacleTo(const std::string& path, bool isFolder) {
    const auto parent = parentOf(path);
    if (faccessat(AT_FDCWD, path.c_str(), F_OK, AT_EACCESS) != 0 && !parent.empty()) {
        return obstacleTo(parent, true);
    }
    return faccessat(AT_FDCWD, path.c_str(), isFolder ? W_OK | X_OK : W_OK, AT_EACCESS) == 0 ? std::string{} : path;
}

DoctorFacts::File fileFacts(const std::string& path, bool isFolder) {
    DoctorFacts::File file{.path = path, .obstacle = obstacleTo(path, isFolder)};
    struct stat state{};
    if (stat(path.c_str(), &state) == 0) {
        file.exists = true;
        file.isOurs = state.st_uid == geteuid();
        file.isPrivate = (state.st_mode & (S_IRWXG | S_IRWXO)) == 0;
        file.size = state.st_size;
    }
    return file;
}

bool isDiskFull(std::string path) {
    struct statvfs disk{};
    while (statvfs(path.c_str(), &disk) != 0 && !path.empty()) {
        path = parentOf(path);
    }
    return !path.empty() && disk.f_bavail == 0;
}

/// All names that the session's message bus knows, as one text; nothing where it cannot be asked.
std::optional<std::string> busNames(ProcessRunner& runner) {
    const auto address = Desktop::busAddress();
    std::optional<std::string> names;
    for (const std::string method : {"ListNames", "ListActivatableNames"}) {
        if (!address) {
            return std::nullopt;
        }
        const std::string bus = "org.freedesktop.DBus";
        const std::string object = "/org/freedesktop/DBus";
        auto answer = runner.output(
            "/usr/bin/dbus-send",
            std::vector<std::string>{"--bus=" + *address, "--print-reply", "--dest=" + bus, object, bus + "." + method},
            patience);
        if (!answer || answer->empty()) {
            answer = runner.output("/usr/bin/gdbus",
                                   std::vector<std::string>{"call", "--address", *address, "--dest", bus,
                                                            "--object-path", object, "--method", bus + "." + method},
                                   patience);
        }
        if (answer && !answer->empty()) {
            names = names.value_or(std::string{}) + *answer;
        }
    }
    return names;
}

void askTheBus(ProcessRunner& runner, DoctorFacts& facts) {
    facts.hasBus = Desktop::busAddress().has_value();
    if (const auto names = busNames(runner)) {
        facts.hasTray = names->contains("org.kde.StatusNotifierWatcher");
        facts.hasKeyring = names->contains("org.freedesktop.secrets") || names->contains("org.kde.kwalletd");
    }
}

std::optional<Pid> applicationPID() {
    ProcProcessLister lister;
    const auto processes = lister.processes();
    const auto found =
        std::ranges::find_if(processes, [](const ProcInfo& proc) { return proc.executable() == "kippo-app"; });
    return found != processes.end() ? std::optional{found->pid} : std::nullopt;
}

void gatherFiles(const Places& places, UserFiles& files, const UserDefaults& defaults, DoctorFacts& facts) {
    facts.logFile = fileFacts(places.eventLog(), false);
    facts.supportFolder = fileFacts(places.supportFolder, true);
    facts.configFolder = fileFacts(places.configFolder, true);
    facts.settings = fileFacts(places.configFolder + "/defaults.json", false);
    const auto settings = jsonFile(files, facts.settings.path);
    facts.areSettingsReadable = !facts.settings.exists || (settings && settings->kind == Json::Kind::object);
    facts.isDiskFull = isDiskFull(places.eventLog());
    facts.needsKeyring = defaults.value("mailAccounts").has_value() || defaults.value("revenueProvider").has_value();
}

} // namespace

DoctorFacts gatherFacts() {
    const auto places = Places::fromEnvironment();
    PosixUserFiles files;
    PosixProcessRunner runner;
    const JsonUserDefaults defaults{places.configFolder + "/defaults.json", JsonUserDefaults::Access::readOnly};
    DoctorFacts facts;
    facts.now = std::chrono::system_clock::now();
    facts.home = places.home;
    facts.executable = Installation::executablePath();
    facts.isInBuildTree = Installation::isInBuildTree(facts.executable);
    facts.hasApplication = Installation::applicationPath(KIPPO_INSTALLED_APP).has_value();
    facts.applicationPID = applicationPID();
    facts.hook = probeHook(facts.executable);
    facts.log = logFacts(places.eventLog(), facts.now);
    const HookBridge::SettingsHome home{files, places.home};
    for (auto& hooks : hookFacts(home, lastEvents(facts.log, defaults, facts.now))) {
        if (hooks.agent == HookAgent::codex && hooks.connection != HookFacts::Connection::none) {
            facts.codexTrust = codexTrust(files, runner, hooks);
        }
        facts.agents.push_back(agentFacts(files, places.home, std::move(hooks)));
    }
    gatherFiles(places, files, defaults, facts);
    facts.display = Desktop::displayName();
    facts.displayAnswers = Desktop::displayAnswers();
    facts.canWatchFiles = Desktop::canWatchFiles();
    askTheBus(runner, facts);
    return facts;
}

} // namespace kippo::Terminal
