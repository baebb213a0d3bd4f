#pragma once

#include "Support/ByteSearch.h"
#include "Support/JsonSkim.h"
#include "Support/Time.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace kippo {

/// What one line of a Claude Code transcript says about usage. The texts stay in the line, which must outlive this.
struct UsageLine {
    /// No line without these bytes is worth a closer look.
    static constexpr ByteSearch marker{R"("usage")", {0, 4, 6}};
    /// The greatest count believed of one message; more is garbage and counts as nothing.
    static constexpr std::int64_t mostTokens = 1'000'000'000'000;

    Date date;
    JsonText session, cwd;
    bool hasSession = false; ///< "sessionId" is there and a text
    bool hasCwd = false;
    JsonText messageID, requestID; ///< empty when missing
    JsonText model;
    std::int64_t input = 0;
    std::int64_t output = 0;
    std::int64_t cacheWrite = 0;
    std::int64_t cacheRead = 0;

    std::int64_t tokens() const { return input + output + cacheWrite + cacheRead; }

    /// Nothing for a line that is not JSON or does not record a real model's usage.
    static std::optional<UsageLine> parse(std::string_view line);
};

} // namespace kippo
