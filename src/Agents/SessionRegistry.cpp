#include "Agents/SessionRegistry.h"

#include "Support/JsonSkim.h"
#include "Support/Text.h"

#include <algorithm>
#include <charconv>
#include <dirent.h>
#include <fcntl.h>
#include <limits>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace kippo {

namespace {

std::optional<std::string> string(JsonSkim& json) {
    const auto text = json.text();
    return text ? std::optional{Text::validUtf8(text->decoded())} : std::nullopt;
}

/// A count of clock ticks, written as a string of digits or as a number.
std::uint64_t ticks(JsonSkim& json) {
    auto digits = json.value();
    if (digits.size() > 2 && digits.starts_with('"')) {
        digits = digits.substr(1, digits.size() - 2);
    }
    std::uint64_t count = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), count);
    return error == std::errc{} && end == digits.data() + digits.size() ? count : 0;
}

RegistryEntry::Status statusFrom(std::string_view name) {
    if (name == "idle") {
        return RegistryEntry::Status::idle;
    }
    if (name == "busy") {
        return RegistryEntry::Status::busy;
    }
    return name == "waiting" ? RegistryEntry::Status::waiting : RegistryEntry::Status::unknown;
}

void readMember(JsonSkim& json, const JsonText& key, RegistryEntry& entry) {
    if (key == "pid") {
        const auto pid = json.integer().value_or(0);
        entry.pid = pid > 0 && pid <= std::numeric_limits<Pid>::max() ? static_cast<Pid>(pid) : 0;
    } else if (key == "sessionId") {
        entry.session = string(json).value_or("");
    } else if (key == "cwd") {
        entry.cwd = string(json);
    } else if (key == "entrypoint") {
        entry.entrypoint = string(json);
    } else if (key == "procStart") {
        entry.procStart = ticks(json);
    } else if (key == "status") {
        entry.status = statusFrom(string(json).value_or(""));
    } else if (key == "waitingFor") {
        entry.waitingFor = string(json);
    } else if (key == "statusUpdatedAt") {
        if (const auto milliseconds = json.integer()) {
            entry.statusUpdatedAt = dateFromUnix(static_cast<double>(*milliseconds) / 1000);
        }
    }
}

/// All of a file of at most `maxBytes`; nothing when it is larger or cannot be read.
std::optional<std::string> contents(int file) {
    std::string text(SessionRegistry::maxBytes + 1, '\0');
    std::size_t have = 0;
    while (have < text.size()) {
        const auto got = ::read(file, text.data() + have, text.size() - have);
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            break;
        }
        have += static_cast<std::size_t>(got);
    }
    text.resize(have);
    return have > SessionRegistry::maxBytes ? std::nullopt : std::optional{std::move(text)};
}

} // namespace

std::optional<RegistryEntry> SessionRegistry::parse(std::string_view text) {
    RegistryEntry entry;
    JsonSkim json{text};
    const bool isObject = json.object([&](const JsonText& key) { readMember(json, key, entry); });
    if (!isObject || !json.finished() || entry.pid == 0 || entry.session.empty()) {
        return std::nullopt;
    }
    return entry;
}

std::vector<RegistryEntry> SessionRegistry::read(const std::string& home) { return SessionRegistryReader{home}.poll(); }

std::optional<RegistryEntry> SessionRegistryReader::readFile(int folder, const char* name) {
    // O_NONBLOCK so that a pipe under such a name cannot hold the program up.
    const int file = ::openat(folder, name, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (file < 0) {
        return std::nullopt;
    }
    struct stat info{};
    std::optional<RegistryEntry> entry;
    if (::fstat(file, &info) == 0 && S_ISREG(info.st_mode)) {
        const auto text = contents(file);
        entry = text ? SessionRegistry::parse(*text) : std::nullopt;
    }
    ::close(file);
    return entry;
}

std::vector<RegistryEntry> SessionRegistryReader::poll() {
    const auto close = [](DIR* open) { ::closedir(open); };
    const std::unique_ptr<DIR, decltype(close)> directory(::opendir(folder_.c_str()), close);
    std::map<std::string, Known, std::less<>> now;
    std::vector<RegistryEntry> entries;
    while (const auto* item = directory ? ::readdir(directory.get()) : nullptr) {
        const std::string_view name = item->d_name;
        struct stat info{};
        const int folder = ::dirfd(directory.get());
        if (!name.ends_with(".json") || ::fstatat(folder, item->d_name, &info, 0) != 0 || !S_ISREG(info.st_mode)) {
            continue;
        }
#ifdef __APPLE__
        const auto& time = info.st_mtimespec;
#else
        const auto& time = info.st_mtim;
#endif
        const Stamp stamp{time.tv_sec, time.tv_nsec, info.st_size, static_cast<std::uint64_t>(info.st_ino)};
        const auto before = known_.find(name);
        Known& known = now[std::string{name}];
        const bool same = before != known_.end() && before->second.stamp == stamp;
        if (same && before->second.settled) {
            known = std::move(before->second);
        } else {
            // Two writes within one tick of the file system's clock look alike, so a change is read twice.
            known = {stamp, same, readFile(folder, item->d_name)};
        }
        if (known.entry) {
            entries.push_back(*known.entry);
        }
    }
    known_ = std::move(now);
    std::ranges::sort(entries, {}, [](const RegistryEntry& entry) { return entry.pid; });
    return entries;
}

} // namespace kippo
