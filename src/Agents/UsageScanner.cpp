#include "Agents/UsageScanner.h"

#include "Agents/Pricing.h"
#include "Agents/UsageFiles.h"
#include "Agents/UsageLine.h"
#include "Support/LocalTime.h"
#include "Support/Text.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kippo {

namespace {

using Entry = UsageScanner::Entry;
using Totals = UsageScanner::Totals;

constexpr Seconds fiveHours{18000};

/// Below this a second thread costs more than it saves.
constexpr std::uint64_t worthAThread = std::uint64_t{8} << 20U;

/// The keys of counted messages, as hashes: a set of numbers without a node for each. Among a million keys the chance
/// that any two clash is one in thirty million.
class Keys {
public:
    /// False when the key is there already.
    bool add(std::uint64_t key) {
        if (count_ * 4 >= slots_.size() * 3) {
            grow();
        }
        key = key == 0 ? 1 : key;
        std::uint64_t& slot = slots_[place(key)];
        if (slot == key) {
            return false;
        }
        slot = key;
        ++count_;
        return true;
    }
    void clear() {
        std::ranges::fill(slots_, 0);
        count_ = 0;
    }

private:
    /// Where the key is, or the empty slot for it.
    std::size_t place(std::uint64_t key) const {
        std::size_t at = static_cast<std::size_t>(key) & (slots_.size() - 1);
        while (slots_[at] != 0 && slots_[at] != key) {
            at = (at + 1) & (slots_.size() - 1);
        }
        return at;
    }
    void grow() {
        const auto old =
            std::exchange(slots_, std::vector<std::uint64_t>(std::max<std::size_t>(64, slots_.size() * 2)));
        for (const auto key : old) {
            if (key != 0) {
                slots_[place(key)] = key;
            }
        }
    }

    std::vector<std::uint64_t> slots_; ///< a power of two; 0 is empty
    std::size_t count_ = 0;
};

/// Keeps each text once and gives it a number. For two threads at a time.
class Names {
public:
    std::uint32_t number(std::string_view name) {
        const std::scoped_lock lock{mutex_};
        if (const auto known = numbers_.find(name); known != numbers_.end()) {
            return known->second;
        }
        const auto number = static_cast<std::uint32_t>(names_.size());
        numbers_.emplace(names_.emplace_back(name), number);
        return number;
    }
    const std::string& operator[](std::uint32_t number) const { return names_[number]; }
    std::size_t size() const { return names_.size(); }

private:
    std::mutex mutex_;
    std::deque<std::string> names_;
    std::unordered_map<std::string_view, std::uint32_t> numbers_;
};

/// A text and its number among the names, as in the line before: sessions and folders seldom change from line to line.
class Recent {
public:
    std::uint32_t number(const JsonText& text, Names& names) {
        if (raw_ != text.raw) {
            raw_ = text.raw;
            number_ = names.number(Text::validUtf8(text.decoded()));
        }
        return number_;
    }

private:
    std::optional<std::string> raw_;
    std::uint32_t number_ = Entry::none;
};

struct Record {
    std::uint64_t key = 0;
    Entry entry;
};

/// A file with bytes to read, and then what was in them.
struct Job {
    UsageFiles::Found file;
    std::uint64_t from = 0;
    UsageFiles::LineReader::Reached reached{}; ///< `from` until it was read
    std::vector<Record> records{};
};

std::string_view nameWithoutExtension(std::string_view path) {
    const auto name = Text::lastPathComponent(path);
    return name.substr(0, name.rfind('.'));
}

/// Reads files one after the other, on a thread of its own or not.
class Reader {
public:
    Reader(Names& names, Date cutoff, const std::atomic<bool>& cancelled)
        : names_(names), cutoff_(cutoff), cancelled_(cancelled) {}

    void read(Job& job) {
        keys_.clear();
        fallback_.reset();
        job.reached = lines_.read(job.file.path, job.from, job.file.size, cancelled_,
                                  [&](std::string_view text) { readLines(text, job); });
        job.records.shrink_to_fit();
    }

private:
    void readLines(std::string_view text, Job& job) {
        for (std::size_t hit = 0; (hit = UsageLine::marker.find(text, hit)) != ByteSearch::npos;) {
            const std::size_t begin = findLast(text.substr(0, hit), '\n') + 1; // none is -1
            const std::size_t end = text.find('\n', hit);
            readLine(text.substr(begin, end - begin), job);
            hit = end + 1;
        }
    }

    void readLine(std::string_view text, Job& job) {
        const auto line = UsageLine::parse(text);
        if (!line || line->date < cutoff_) {
            return;
        }
        const std::uint64_t key = keyOf(*line, text);
        if (!keys_.add(key)) {
            return;
        }
        if (line->model.raw != model_) {
            model_ = line->model.raw;
            price_ = Pricing::price(line->model.decoded());
        }
        const auto count = [](std::int64_t tokens) { return static_cast<double>(tokens); };
        const double cost = (count(line->input) * price_.input + count(line->output) * price_.output +
                             count(line->cacheWrite) * price_.cacheWrite + count(line->cacheRead) * price_.cacheRead) /
                            1e6;
        job.records.push_back(
            {.key = key,
             .entry = {.date = line->date,
                       .tokens = line->tokens(),
                       .cost = cost,
                       .session = line->hasSession ? session_.number(line->session, names_) : fallback(job),
                       .cwd = line->hasCwd ? cwd_.number(line->cwd, names_) : Entry::none}});
    }

    /// One message is written as several lines that repeat its usage. A line that names neither message nor request is
    /// told apart by all it says.
    std::uint64_t keyOf(const UsageLine& line, std::string_view text) {
        const std::hash<std::string_view> hash;
        if (line.messageID.empty() && line.requestID.empty()) {
            return hash(text);
        }
        const auto append = [this](const JsonText& part) {
            if (part.escaped) {
                key_ += part.decoded();
            } else {
                key_ += part.raw;
            }
        };
        key_.clear();
        append(line.messageID);
        key_ += ':';
        append(line.requestID);
        return hash(key_);
    }

    /// A session that does not say its name has that of its file.
    std::uint32_t fallback(const Job& job) {
        if (!fallback_) {
            fallback_ = names_.number(Text::validUtf8(nameWithoutExtension(job.file.path)));
        }
        return *fallback_;
    }

    Names& names_;
    Date cutoff_;
    const std::atomic<bool>& cancelled_;
    UsageFiles::LineReader lines_;
    Keys keys_; ///< of the file
    Recent session_, cwd_;
    std::optional<std::uint32_t> fallback_;
    std::optional<std::string> model_;
    Pricing::Price price_;
    std::string key_;
};

/// The first moments of the last seven local days; the last is today's.
std::array<Date, 7> weekBefore(Date now) {
    std::array<Date, 7> days;
    for (int day = 0; day < 7; ++day) {
        days[static_cast<std::size_t>(day)] = startOfLocalDay(now, day - 6);
    }
    return days;
}

} // namespace

/// What is known from one refresh to the next.
struct UsageScanner::State {
    /// How far a file has been read.
    struct Progress {
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::uint64_t offset = 0; ///< just behind a line feed
        std::uint64_t seen = 0;   ///< behind the last byte read, which may be within a line
    };

    std::string root;
    std::atomic<bool> cancelled = false;
    std::unordered_map<std::string, Progress> files; ///< by path
    Keys seen;
    Names names;
    std::deque<Entry> entries; ///< of the week; a deque never needs twice its memory to grow

    std::vector<Job> findJobs(Date cutoff);
    void run(std::vector<Job>& jobs, Date cutoff);
    void keep(std::vector<Job>& jobs);
    Report summarize(const std::array<Date, 7>& days, Date now) const;
};

void UsageScanner::Totals::add(const Entry& entry) {
    tokens += entry.tokens;
    cost += entry.cost;
}

UsageScanner::UsageScanner(const std::string& home) : state_(std::make_unique<State>()) {
    state_->root = home + "/.claude/projects";
}

UsageScanner::~UsageScanner() = default;

void UsageScanner::cancel() { state_->cancelled = true; }

UsageScanner::Report UsageScanner::refresh(Date now) {
    const auto days = weekBefore(now);
    const Date cutoff = days.front();
    std::erase_if(state_->entries, [cutoff](const Entry& entry) { return entry.date < cutoff; });
    if (!state_->cancelled) {
        auto jobs = state_->findJobs(cutoff);
        state_->run(jobs, cutoff);
        state_->keep(jobs);
    }
    return state_->summarize(days, now);
}

/// The files with something new, oldest first: what a later session copied from an earlier one counts for the earlier.
std::vector<Job> UsageScanner::State::findJobs(Date cutoff) {
    std::vector<Job> jobs;
    UsageFiles::forEach(root, [&](UsageFiles::Found file) {
        if (file.modified < cutoff) {
            return;
        }
        Progress& known = files[file.path];
        // Another file took its place, or it was written anew.
        if (known.device != file.device || known.inode != file.inode || file.size < known.offset) {
            known = {.device = file.device, .inode = file.inode};
        }
        if (known.seen != file.size) {
            const auto from = known.offset;
            jobs.push_back({.file = std::move(file), .from = from, .reached = {.line = from, .byte = from}});
        }
    });
    std::ranges::sort(jobs, {}, [](const Job& job) { return std::tie(job.file.modified, job.file.path); });
    return jobs;
}

void UsageScanner::State::run(std::vector<Job>& jobs, Date cutoff) {
    std::vector<Job*> order;
    std::uint64_t bytes = 0;
    for (auto& job : jobs) {
        order.push_back(&job);
        bytes += job.file.size - job.from;
    }
    // The largest first, so that the threads end together.
    std::ranges::sort(order, std::greater{}, [](const Job* job) { return job->file.size - job->from; });
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        Reader reader{names, cutoff, cancelled};
        for (std::size_t at = next++; at < order.size() && !cancelled; at = next++) {
            reader.read(*order[at]);
        }
    };
    std::thread helper;
    if (bytes >= worthAThread) {
        try {
            helper = std::thread{work};
        } catch (const std::system_error&) { // no thread to be had: one does it too
        }
    }
    work();
    if (helper.joinable()) {
        helper.join();
    }
}

void UsageScanner::State::keep(std::vector<Job>& jobs) {
    for (auto& job : jobs) {
        Progress& known = files[job.file.path];
        known.offset = job.reached.line;
        known.seen = job.reached.byte;
        for (const auto& record : job.records) {
            if (seen.add(record.key)) {
                entries.push_back(record.entry);
            }
        }
        job.records = {};
    }
}

UsageScanner::Report UsageScanner::State::summarize(const std::array<Date, 7>& days, Date now) const {
    Report report;
    std::vector<Totals> sessions(names.size());
    std::vector<Totals> projects(names.size());
    std::vector<bool> hasSession(names.size());
    std::vector<bool> hasProject(names.size());
    std::vector<bool> seenProject(names.size());
    std::size_t day = days.size() - 1;
    std::uint32_t project = Entry::none;
    for (const auto& entry : entries) {
        // Most entries are of the day and the folder of the one before. A record from the future, of a clock that was
        // set back since, is today's.
        for (; day > 0 && entry.date < days[day]; --day) {
        }
        for (; day + 1 < days.size() && entry.date >= days[day + 1]; ++day) {
        }
        report.week[day].add(entry);
        if (entry.cwd != project && entry.cwd != Entry::none) {
            project = entry.cwd;
            seenProject[project] = true;
        }
        if (entry.date >= now - fiveHours) {
            report.fiveHours.add(entry);
        }
        if (entry.date < days.back()) {
            continue;
        }
        report.today.add(entry);
        sessions[entry.session].add(entry);
        hasSession[entry.session] = true;
        if (entry.cwd != Entry::none) {
            projects[entry.cwd].add(entry);
            hasProject[entry.cwd] = true;
        }
    }
    for (std::uint32_t number = 0; number < names.size(); ++number) {
        if (hasSession[number]) {
            report.bySessionToday.emplace(names[number], sessions[number]);
        }
        if (hasProject[number]) {
            report.byProjectToday.emplace(names[number], projects[number]);
        }
        if (seenProject[number]) {
            report.projects.insert(names[number]);
        }
    }
    return report;
}

} // namespace kippo
