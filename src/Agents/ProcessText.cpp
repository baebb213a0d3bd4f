#include "Agents/ProcessScanner.h"
#include "Support/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

namespace kippo::ProcessScanner {

namespace {

template <typename Number> std::optional<Number> number(std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional{value} : std::nullopt;
}

/// Takes the first word off `rest`; empty at the end.
std::string_view takeWord(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    const std::string_view word = rest.substr(0, rest.find(' '));
    rest.remove_prefix(word.size());
    return word;
}

/// "12", "03:04", "1-02:03:04".
bool looksElapsed(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789:-.") == std::string_view::npos;
}

/// `ps` prints the age of a process that it finds started in the next tick wrapped round, as a billion years.
double believableAge(double seconds) {
    constexpr double hundredYears = 3.2e9;
    return seconds < hundredYears ? seconds : 0;
}

std::optional<ProcInfo> parseRow(std::string_view line) {
    const auto pid = number<Pid>(takeWord(line));
    const auto ppid = number<Pid>(takeWord(line));
    const auto rss = number<std::int64_t>(takeWord(line));
    const auto cpu = number<double>(takeWord(line));
    const std::string_view elapsed = takeWord(line);
    const std::string_view command = Text::trimmed(line);
    if (!pid || !ppid || !rss || !cpu || *pid <= 0 || !std::isfinite(*cpu) || !looksElapsed(elapsed) ||
        command.empty()) {
        return std::nullopt;
    }
    return ProcInfo{.pid = *pid,
                    .ppid = *ppid,
                    .rssKB = *rss,
                    .cpu = *cpu,
                    .uptime = believableAge(parseElapsed(elapsed)),
                    .command = Text::validUtf8(command),
                    .adopted = *ppid == 1};
}

/// Reads `lsof`'s field output: calls `take` with the process and the text of each "n" line.
template <typename Take> void eachName(std::string_view output, Take take) {
    std::optional<Pid> current;
    for (const std::string_view line : Text::split(output, '\n')) {
        if (line[0] == 'p') {
            current = number<Pid>(line.substr(1));
        } else if (line[0] == 'n' && current) {
            take(*current, line.substr(1));
        }
    }
}

} // namespace

double parseElapsed(std::string_view text) {
    double days = 0;
    if (const auto dash = text.find('-'); dash != std::string_view::npos) {
        days = number<double>(text.substr(0, dash)).value_or(0);
        text.remove_prefix(dash + 1);
    }
    double value = 0;
    for (const std::string_view part : Text::split(text, ':')) {
        value = value * 60 + number<double>(part).value_or(0);
    }
    return days * 86400 + value;
}

std::vector<ProcInfo> parsePs(std::string_view output) {
    std::vector<ProcInfo> rows;
    for (const std::string_view line : Text::split(output, '\n')) {
        if (auto row = parseRow(line)) {
            rows.push_back(std::move(*row));
        }
    }
    return rows;
}

std::map<Pid, std::vector<int>> parseListeners(std::string_view output) {
    std::map<Pid, std::vector<int>> ports;
    eachName(output, [&](Pid pid, std::string_view address) {
        const auto port = number<int>(address.substr(address.rfind(':') + 1));
        if (!port || *port <= 0 || *port > 65535 || !address.contains(':')) {
            return;
        }
        auto& list = ports[pid];
        if (std::ranges::find(list, *port) == list.end()) {
            list.push_back(*port);
        }
    });
    return ports;
}

std::map<Pid, std::string> parseWorkingDirectories(std::string_view output) {
    std::map<Pid, std::string> folders;
    // A folder that cannot be read shows as a remark such as "/proc/7/cwd (readlink: Permission denied)".
    eachName(output, [&](Pid pid, std::string_view folder) {
        if (folder.starts_with('/') && !folder.contains(" (readlink: ")) {
            folders.insert_or_assign(pid, Text::validUtf8(folder));
        }
    });
    return folders;
}

} // namespace kippo::ProcessScanner
