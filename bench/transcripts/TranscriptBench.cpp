// How long it takes to read the tail of a transcript of Claude Code and of Gemini CLI, and what a poll of quiet
// sessions costs. The transcript is made up from the shapes of real lines by a seeded generator, so that every run
// reads the same bytes.

#include "Agents/TranscriptWatcher.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <rapidjson/document.h>
#include <string>
#include <vector>

namespace {

using kippo::TranscriptWatcher;

constexpr int rounds = 400;

class Generator {
public:
    /// Whole lines, a little more than `bytes` in all.
    std::string transcript(std::size_t bytes) {
        std::string text;
        while (text.size() < bytes) {
            turn(text);
        }
        return text;
    }

    /// The same of Gemini CLI's chats, in which every message with calls is written twice.
    std::string chat(std::size_t bytes) {
        std::string text;
        while (text.size() < bytes) {
            chatTurn(text);
        }
        return text;
    }

private:
    /// Prose or code, as JSON: words, quotes, and a line feed every fifty characters or so.
    std::string words(std::size_t bytes) {
        static constexpr const char* parts[] = {"the ",     "value ",        "return ",  "std::string ", "if (",
                                                "it) { ",   "\\\"name\\\" ", "path/to ", "0x1f ",        "für ",
                                                "— ",       "const ",        "count++ ", "= ",           "\\t",
                                                "// why  ", "\\n",           "\\n    ",  "result",       ", "};
        std::string text;
        while (text.size() < bytes) {
            text += parts[random_() % std::size(parts)];
        }
        return text;
    }

    std::size_t size(std::size_t typical) {
        return static_cast<std::size_t>(std::lognormal_distribution<>(std::log(double(typical)), 0.8)(random_));
    }

    std::string envelope(const std::string& type, const std::string& body) {
        char stamp[40];
        std::snprintf(stamp, sizeof stamp, "2026-11-21T02:%02d:%02d.%03dZ", (clock_ / 60000) % 60, (clock_ / 1000) % 60,
                      clock_ % 1000);
        clock_ += 700;
        return R"({"parentUuid":"56bb4dff-257f-4f96-b043-5826ff9cc510","isSidechain":false,)" + body + R"("type":")" +
               type + R"(","uuid":"f1cc940d-1577-48c3-915c-d61642e1a021","timestamp":")" + stamp +
               R"(","userType":"external","entrypoint":"cli","cwd":"/home/dev/claude",)"
               R"("sessionId":"42508ae8-8fa4-415b-952b-08c758f23d89","version":"2.1.197","gitBranch":"HEAD"})"
               "\n";
    }

    std::string assistant(const std::string& item, const std::string& stop) {
        return envelope(
            "assistant",
            R"("message":{"id":"msg_mwprkngs0002","type":"message","role":"assistant","model":"claude-opus-4-8","content":[)" +
                item + R"(],"stop_reason":")" + stop +
                R"(","stop_sequence":null,"usage":{"input_tokens":1200,"cache_creation_input_tokens":300,)"
                R"("cache_read_input_tokens":5000,"output_tokens":42,"server_tool_use":{"web_search_requests":0,)"
                R"("web_fetch_requests":0},"service_tier":"standard","cache_creation":{"ephemeral_1h_input_tokens":0,)"
                R"("ephemeral_5m_input_tokens":300},"inference_geo":"","iterations":[],"speed":"standard"},)"
                R"("stop_details":null},"requestId":"req_mwprkngs0003",)");
    }

    /// A request, some rounds of text, call and result, and a last reply.
    void turn(std::string& text) {
        text += envelope("user", R"("message":{"role":"user","content":")" + words(size(200)) + "\"},");
        text += envelope("attachment", R"("attachment":{"type":"skill_listing","content":")" + words(size(1500)) +
                                           R"(","skillCount":13,"names":["review","run","init"]},)");
        const int calls = 2 + static_cast<int>(random_() % 8);
        for (int call = 0; call < calls; ++call) {
            const std::string id = "toolu_" + std::to_string(++calls_);
            if (call % 2 == 0) {
                text += assistant(R"({"type":"text","text":")" + words(size(250)) + "\"}", "tool_use");
            }
            text += assistant(R"({"type":"tool_use","id":")" + id +
                                  R"(","name":"Edit","input":{"file_path":"/home/dev/claude/a.cpp","new_string":")" +
                                  words(size(600)) + "\"}}",
                              "tool_use");
            const std::string output = words(size(1800));
            text += envelope("user", R"("message":{"role":"user","content":[{"tool_use_id":")" + id +
                                         R"(","type":"tool_result","content":")" + output +
                                         R"(","is_error":false}]},"toolUseResult":{"stdout":")" + output +
                                         R"(","stderr":"","interrupted":false,"isImage":false},)");
        }
        text += assistant(R"({"type":"text","text":")" + words(size(900)) + R"(\n\nDone: changed it"})", "end_turn");
        text += envelope("system", R"("subtype":"turn_duration","durationMs":478,"messageCount":8,)");
    }

    std::string message(const std::string& type, const std::string& content, const std::string& more = "") {
        char stamp[40];
        std::snprintf(stamp, sizeof stamp, "2026-11-21T02:%02d:%02d.%03dZ", (clock_ / 60000) % 60, (clock_ / 1000) % 60,
                      clock_ % 1000);
        clock_ += 700;
        return R"({"id":"a0057200-802b-4b45-bb84-76e7d15290f0","timestamp":")" + std::string{stamp} + R"(","type":")" +
               type + R"(","content":)" + content + more + "}\n" + R"({"$set":{"lastUpdated":")" + stamp + "\"}}\n";
    }

    void chatTurn(std::string& text) {
        const std::string tokens =
            R"(,"thoughts":[],"tokens":{"input":6200,"output":42,"cached":5000,"thoughts":10,"tool":0,"total":6252},)"
            R"("model":"gemini-2.5-pro")";
        text += message("user", R"([{"text":")" + words(size(200)) + "\"}]");
        const int calls = 2 + static_cast<int>(random_() % 8);
        for (int call = 0; call < calls; ++call) {
            const std::string id = "replace__" + std::to_string(++calls_), said = "\"" + words(size(250)) + "\"";
            const std::string answer = R"([{"functionResponse":{"id":")" + id +
                                       R"(","name":"replace","response":{"output":")" + words(size(1800)) + "\"}}}]";
            text += message("gemini", said, tokens);
            text += message("gemini", said,
                            tokens + R"(,"toolCalls":[{"id":")" + id +
                                R"(","name":"replace","args":{"file_path":"/home/dev/a.cpp","new_string":")" +
                                words(size(600)) + R"("},"result":)" + answer +
                                R"(,"status":"success","timestamp":"2026-11-21T02:00:00.000Z"}])");
            text += message("user", answer);
        }
        text += message("gemini", "\"" + words(size(900)) + R"(\n\nDone: changed it")", tokens);
    }

    std::mt19937 random_{20261121};
    int clock_ = 0;
    int calls_ = 0;
};

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

struct Way {
    const char* name;
    std::function<void()> work;
    std::vector<double> microseconds{};
};

/// Runs the ways in turn, so that whatever disturbs the machine disturbs them all.
void measure(std::vector<Way>& ways) {
    using Clock = std::chrono::steady_clock;
    for (int round = 0; round < rounds; ++round) {
        for (auto& way : ways) {
            const auto start = Clock::now();
            way.work();
            way.microseconds.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
        }
    }
}

void print(std::vector<Way>& ways) {
    std::printf("%-52s %10s %10s\n", "", "median µs", "95 % µs");
    for (auto& way : ways) {
        std::ranges::sort(way.microseconds);
        std::printf("%-52s %10.1f %10.1f\n", way.name, way.microseconds[rounds / 2],
                    way.microseconds[rounds * 95 / 100]);
    }
}

void expect(bool condition) {
    if (!condition) {
        std::fputs("the work was not done: figures would mean nothing\n", stderr);
        std::exit(1);
    }
}

} // namespace

int main() {
    const std::string all = Generator{}.transcript(400000);
    // As the watcher reads it: the last bytes, without the piece of a line they begin with.
    std::string tail = all.substr(all.size() - TranscriptWatcher::tailBytes);
    tail.erase(0, tail.find('\n') + 1);

    std::string chat = Generator{}.chat(400000);
    chat.erase(0, chat.size() - TranscriptWatcher::tailBytes);
    chat.erase(0, chat.find('\n') + 1);

    std::string name = (std::filesystem::temp_directory_path() / "kippo-bench-XXXXXX").string();
    const std::filesystem::path home = ::mkdtemp(name.data());
    const auto project = home / ".claude/projects/-home-dev";
    std::filesystem::create_directories(project);
    for (int session = 0; session < 20; ++session) {
        std::ofstream{project / (std::to_string(session) + ".jsonl")} << all;
    }
    const auto now = kippo::Date{std::chrono::system_clock::now().time_since_epoch()};
    TranscriptWatcher quiet{home.string()};
    expect(quiet.poll(now).size() == 20);

    std::vector<Way> ways{
        {"tail of 160,000 bytes: this program",
         [&] {
             const auto lines = linesOf(tail);
             expect(TranscriptWatcher::parseClaude(lines, "id", now)->summary == "changed it");
         }},
        {"the same bytes: RapidJSON, a tree of each line",
         [&] {
             for (const auto line : linesOf(tail)) {
                 rapidjson::Document document;
                 document.Parse(line.data(), line.size());
                 expect(document.IsObject());
             }
         }},
        {"the tail of a Gemini CLI chat: this program",
         [&] {
             const auto lines = linesOf(chat);
             expect(TranscriptWatcher::parseGemini(lines, "id", now)->summary == "changed it");
         }},
        {"first poll of 20 sessions of 400,000 bytes",
         [&] { expect(TranscriptWatcher{home.string()}.poll(now).size() == 20); }},
        {"poll of 20 quiet sessions", [&] { expect(quiet.poll(now).size() == 20); }},
    };
    measure(ways);
    std::printf("%zu bytes, %zu lines\n", tail.size(), linesOf(tail).size());
    print(ways);
    std::filesystem::remove_all(home);
}
