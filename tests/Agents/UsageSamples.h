#pragma once

#include "Support/Time.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <string>

/// Lines for the tests of usage.
namespace kippo::samples {

/// A reply in a transcript of Claude Code.
struct Reply {
    std::string id = "m1";
    Date date = dateFromUnix(1795226940); // 2026-11-21 02:09:00 UTC
    std::string model = "claude-opus-4-5-20251101";
    std::string session = "s1";
    std::string cwd = "/home/dev/app";
    std::string request = "r1";
    std::string content = "[]";
    int input = 1;

    /// 10 tokens in all: 1 in, 2 out, 3 written to the cache, 4 read from it.
    std::string line() const {
        return R"({"parentUuid":null,"message":{"id":")" + id + R"(","model":")" + model + R"(","content":)" + content +
               R"(,"usage":{"input_tokens":)" + std::to_string(input) +
               R"(,"output_tokens":2,"cache_creation_input_tokens":3,)"
               R"("cache_read_input_tokens":4,"cache_creation":{"ephemeral_5m_input_tokens":3}}},"requestId":")" +
               request + R"(","type":"assistant","timestamp":")" + stamp(date) + R"(","cwd":")" + cwd +
               R"(","sessionId":")" + session + "\"}\n";
    }
    static std::string stamp(Date date) {
        return fmt::format("{:%FT%T}.250Z", fmt::gmtime(static_cast<std::time_t>(unixSeconds(date))));
    }
};

} // namespace kippo::samples
