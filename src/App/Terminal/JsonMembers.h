#pragma once

#include "Support/Json.h"
#include "Support/Time.h"

#include <optional>
#include <string_view>

namespace kippo::Terminal {

/// Writes members of an object; absent optionals are null, so that every key is always there.
class JsonMembers {
public:
    explicit JsonMembers(Json::Writer& writer) : writer_(writer) {}

    void text(std::string_view key, std::optional<std::string_view> value) {
        writer_.key(key);
        value ? writer_.string(*value) : writer_.null();
    }
    void number(std::string_view key, double value) { writer_.key(key).number(value); }
    void whole(std::string_view key, std::int64_t value) { writer_.key(key).number(value); }
    void flag(std::string_view key, bool value) { writer_.key(key).boolean(value); }
    void date(std::string_view key, const std::optional<Date>& value) {
        writer_.key(key);
        value ? writer_.number(unixSeconds(*value)) : writer_.null();
    }
    /// A list of anything: `write` is called for each element.
    template <typename List, typename Write> void list(std::string_view key, const List& elements, const Write& write) {
        writer_.key(key).beginArray();
        for (const auto& element : elements) {
            write(element);
        }
        writer_.endArray();
    }

private:
    Json::Writer& writer_;
};

} // namespace kippo::Terminal
