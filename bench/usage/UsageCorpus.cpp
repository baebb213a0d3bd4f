#include "UsageCorpus.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <random>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace kippo::UsageCorpus {

namespace {

constexpr std::size_t longest = 1'000'000;

struct Message {
    std::string id;
    std::string request;
    std::string model;
    std::string usage;
};

class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) { fillPool(); }

    std::uint64_t below(std::uint64_t limit) { return random_() % limit; }
    double lognormal(double median, double sigma) {
        return std::lognormal_distribution<>(std::log(median), sigma)(random_);
    }

    Message message() {
        static constexpr std::array models{"claude-opus-4-5-20251101", "claude-sonnet-4-5-20250929",
                                           "claude-haiku-4-5-20251001"};
        const auto fresh = std::to_string(below(2000));
        const auto written = std::to_string(below(9000));
        return {.id = "msg_01" + word(22),
                .request = "req_011C" + word(20),
                .model = models[below(10) < 6 ? 0 : 1 + below(2)],
                .usage = R"({"input_tokens":)" + fresh + R"(,"cache_creation_input_tokens":)" + written +
                         R"(,"cache_read_input_tokens":)" + std::to_string(below(150000)) + R"(,"output_tokens":)" +
                         std::to_string(1 + below(3000)) +
                         R"(,"server_tool_use":{"web_search_requests":0,"web_fetch_requests":0},)"
                         R"("service_tier":"standard","cache_creation":{"ephemeral_1h_input_tokens":0,)"
                         R"("ephemeral_5m_input_tokens":)" +
                         written + R"(},"inference_geo":"","iterations":[],"speed":"standard"})"};
    }

    /// One line of a reply; it repeats the usage of its message.
    std::string reply(const Message& message) {
        const std::string item = below(2) == 0
                                     ? R"({"type":"text","text":")" + text(lognormal(300, 1.2)) + "\"}"
                                     : R"({"type":"tool_use","id":"toolu_)" + word(22) +
                                           R"(","name":"Edit","input":{"file_path":"/home/dev/a.cpp","new_string":")" +
                                           text(lognormal(900, 1.4)) + "\"}}";
        return envelope("assistant", R"("message":{"model":")" + message.model + R"(","id":")" + message.id +
                                         R"(","type":"message","role":"assistant","content":[)" + item +
                                         R"(],"stop_reason":"tool_use","stop_sequence":null,"usage":)" + message.usage +
                                         R"(,"stop_details":null},"requestId":")" + message.request + "\",");
    }

    /// One line of anything else: a tool's result, mostly, which is there twice.
    std::string other() {
        if (below(5) == 0) {
            return envelope("attachment", R"("attachment":{"type":"skill_listing","content":")" +
                                              text(lognormal(600, 1)) + R"(","skillCount":13},)");
        }
        const double size = below(500) == 0 ? 100000 + double(below(380000)) : lognormal(500, 1.6);
        const auto output = text(std::min(size, 480000.0));
        return envelope("user", R"("message":{"role":"user","content":[{"tool_use_id":"toolu_)" + word(22) +
                                    R"(","type":"tool_result","content":")" + output +
                                    R"(","is_error":false}]},"toolUseResult":{"stdout":")" + output +
                                    R"(","stderr":"","interrupted":false,"isImage":false},)");
    }

    /// What follows is written in this session from `from` on.
    void begin(std::string folder, Date from) {
        session_ = uuid();
        folder_ = std::move(folder);
        clock_ = from;
    }
    void resume(std::string session, Date from) {
        session_ = std::move(session);
        clock_ = from;
    }
    const std::string& session() const { return session_; }
    Date clock() const { return clock_; }

private:
    /// Prose and code, as JSON, cut where no escape is cut.
    void fillPool() {
        static constexpr std::array parts{"the ",        "value ",   "return ", "std::string ", "if (",   "it) { ",
                                          "\\\"id\\\" ", "path/to ", "0x1f ",   "für ",         "— ",     "const ",
                                          "count++ ",    "= ",       "\\t",     "// why ",      "\\n",    "\\n    ",
                                          "usage ",      "result",   ", ",      "\\u001b[0m",   "C:\\\\", "guess "};
        while (pool_.size() < 2 * longest) {
            if (pool_.size() < longest) {
                cuts_.push_back(pool_.size());
            }
            pool_ += parts[below(parts.size())];
        }
    }
    std::string text(double size) {
        const auto wanted = static_cast<std::size_t>(std::min(size, double(longest) - 2000));
        const std::size_t from = cuts_[below(cuts_.size())];
        const auto last = pool_.find(' ', from + wanted);
        return pool_.substr(from, last - from);
    }
    std::string word(std::size_t length) {
        static constexpr std::string_view letters = "abcdefghijkmnopqrstuvwxyzABCDEFGHJKLMNPQRSTUVWXYZ23456789";
        std::string word(length, ' ');
        std::ranges::generate(word, [this] { return letters[below(letters.size())]; });
        return word;
    }
    std::string uuid() {
        std::array<char, 40> text{};
        std::snprintf(text.data(), text.size(), "%08x-%04x-4%03x-a%03x-%012llx", unsigned(below(UINT32_MAX)),
                      unsigned(below(65536)), unsigned(below(4096)), unsigned(below(4096)),
                      static_cast<unsigned long long>(random_() & 0xffffffffffffU));
        return text.data();
    }

    std::string envelope(std::string_view type, const std::string& body) {
        const auto seconds = static_cast<std::time_t>(unixSeconds(clock_));
        std::tm utc{};
        std::array<char, 32> stamp{};
        std::strftime(stamp.data(), stamp.size(), "%Y-%m-%dT%H:%M:%S", ::gmtime_r(&seconds, &utc));
        clock_ += Seconds{0.4 + 0.01 * double(below(200))};
        std::string line = R"({"parentUuid":")" + uuid() + R"(","isSidechain":false,)" + body + R"("type":")";
        line.append(type);
        line += R"(","uuid":")" + uuid() + R"(","timestamp":")" + stamp.data() + "." +
                std::to_string(100 + below(900)) + R"(Z","userType":"external","entrypoint":"cli","cwd":")" + folder_ +
                R"(","sessionId":")" + session_ +
                R"(","version":"2.1.197","gitBranch":"main"})"
                "\n";
        return line;
    }

    std::mt19937_64 random_;
    std::string pool_;
    std::vector<std::size_t> cuts_;
    std::string session_, folder_;
    Date clock_;
};

void setModified(const std::string& path, Date date) {
    const timespec then{static_cast<time_t>(unixSeconds(date)), 0};
    const timespec times[2]{then, then};
    ::utimensat(AT_FDCWD, path.c_str(), times, 0);
}

/// A third of the lines are replies: one to four to a message.
void writeSession(Generator& make, const std::string& path, std::uint64_t size, std::vector<Message>& messages) {
    std::filesystem::create_directories(std::filesystem::path{path}.parent_path());
    std::ofstream file{path, std::ios::binary};
    std::uint64_t written = 0;
    const auto write = [&](const std::string& line) {
        file << line;
        written += line.size();
    };
    std::vector<Message> own;
    for (const auto& copied : messages) {
        write(make.reply(copied));
    }
    while (written < size) {
        own.push_back(make.message());
        for (auto lines = 1 + make.below(4); lines > 0; --lines) {
            write(make.reply(own.back()));
            write(make.other());
            write(make.other());
        }
    }
    own.resize(std::min<std::size_t>(own.size(), 20));
    messages = std::move(own);
    file.close();
    setModified(path, make.clock());
}

} // namespace

void make(const std::string& home) {
    const std::filesystem::path finished = home + "/finished";
    if (std::filesystem::exists(finished)) {
        return;
    }
    std::filesystem::remove_all(home);
    Generator make{20261121};
    std::vector<double> weights(files);
    double sum = 0;
    for (auto& weight : weights) {
        sum += weight = make.lognormal(1, 0.9);
    }
    std::vector<Message> messages;
    std::string folder;
    for (int number = 0; number < files; ++number) {
        const Date from = end - Seconds{86400.0 * 5 * double(files - number) / files} - Seconds{36000};
        const auto project = std::to_string(number % 23);
        const std::string projects = home + "/.claude/projects/-home-dev-" + project;
        std::string path;
        if (number % 10 == 9) { // a sub-agent of the session before
            make.resume(make.session(), from);
            path = folder + "/" + make.session() + "/subagents/agent-" + std::to_string(number) + ".jsonl";
        } else {
            make.begin("/home/dev/" + project, from);
            folder = projects;
            path = projects + "/" + make.session() + ".jsonl";
        }
        if (number % 20 != 5) { // others go on where the last session left off
            messages.clear();
        }
        const double share = weights[static_cast<std::size_t>(number)] / sum;
        writeSession(make, path, static_cast<std::uint64_t>(double(bytes) * share), messages);
    }
    std::ofstream{finished} << "made\n";
}

std::string growth(std::size_t size, int round) {
    static Generator make{7};
    make.begin("/home/dev/growing", end - Seconds{600.0 - round});
    std::string text;
    while (text.size() < size) {
        for (const auto& line : {make.reply(make.message()), make.other()}) {
            text += line.size() < size ? line : "";
        }
    }
    return text;
}

} // namespace kippo::UsageCorpus
