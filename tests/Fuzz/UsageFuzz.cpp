// Lines with usage are taken apart lazily. Whatever comes in, that finds the same as a reader that builds the whole
// tree.

#include "Agents/Pricing.h"
#include "Agents/TranscriptWatcher.h"
#include "Agents/UsageLine.h"
#include "Require.h"
#include "Support/Text.h"

#include <cstdint>
#include <optional>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using kippo::JsonSkim;
using kippo::UsageLine;

struct Value {
    bool isObject = false;
    std::optional<std::string> string;
    std::optional<std::int64_t> integer;
    std::vector<std::string> names; ///< of the members; an array's have none
    std::vector<Value> members;
};

/// Builds the tree of one text.
struct Builder : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Builder> {
    Value top;
    std::vector<Value*> open{&top};
    std::string key;

    Value& add() {
        open.back()->names.push_back(std::exchange(key, {}));
        return open.back()->members.emplace_back();
    }
    bool begin(bool isObject) {
        Value& value = add();
        value.isObject = isObject;
        open.push_back(&value);
        return true;
    }
    bool end() {
        open.pop_back();
        return true;
    }
    bool integer(std::int64_t number) {
        add().integer = number;
        return true;
    }

    bool Default() {
        add();
        return true;
    }
    bool Key(const char* text, rapidjson::SizeType length, bool) {
        key.assign(text, length);
        return true;
    }
    bool String(const char* text, rapidjson::SizeType length, bool) {
        add().string.emplace(text, length);
        return true;
    }
    bool Int(int number) { return integer(number); }
    bool Uint(unsigned number) { return integer(number); }
    bool Int64(std::int64_t number) { return integer(number); }
    bool StartObject() { return begin(true); }
    bool EndObject(rapidjson::SizeType) { return end(); }
    bool StartArray() { return begin(false); }
    bool EndArray(rapidjson::SizeType) { return end(); }
};

/// The last member of that name.
const Value* member(const Value& object, std::string_view name) {
    const Value* found = nullptr;
    for (std::size_t at = 0; at < object.members.size(); ++at) {
        found = object.names[at] == name ? &object.members[at] : found;
    }
    return found;
}

std::optional<std::string> text(const Value& object, std::string_view name) {
    const Value* const value = member(object, name);
    return value ? value->string : std::nullopt;
}

std::int64_t count(const Value& usage, std::string_view name) {
    const Value* const value = member(usage, name);
    const auto number = value ? value->integer.value_or(0) : 0;
    return number >= 0 && number <= UsageLine::mostTokens ? number : 0;
}

void compare(const std::optional<UsageLine>& line, const Value& tree) {
    const Value* const message = tree.isObject ? member(tree, "message") : nullptr;
    const Value* const usage = message && message->isObject ? member(*message, "usage") : nullptr;
    if (!usage || !usage->isObject) {
        require(!line);
        return;
    }
    const auto model = text(*message, "model").value_or("");
    const auto date = kippo::TranscriptWatcher::date(text(tree, "timestamp").value_or(""));
    require(line.has_value() == (text(tree, "type") == "assistant" && model != "<synthetic>" && date));
    if (!line) {
        return;
    }
    require(line->date == *date && line->model == model);
    require(line->hasSession == text(tree, "sessionId").has_value() && line->hasCwd == text(tree, "cwd").has_value());
    require(line->session == text(tree, "sessionId").value_or("") && line->cwd == text(tree, "cwd").value_or(""));
    require(line->messageID == text(*message, "id").value_or("") &&
            line->requestID == text(tree, "requestId").value_or(""));
    require(line->input == count(*usage, "input_tokens") && line->output == count(*usage, "output_tokens"));
    require(line->cacheWrite == count(*usage, "cache_creation_input_tokens") &&
            line->cacheRead == count(*usage, "cache_read_input_tokens"));
    require(line->tokens() >= 0);
    kippo::Pricing::price(model);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    require(UsageLine::marker.find(input) == input.find("\"usage\""));
    require(kippo::findLast(input, '\n') == input.rfind('\n'));
    for (const auto line : kippo::Text::split(input, '\n')) {
        const auto usage = UsageLine::parse(line);
        // The tree's reader ends its text at a NUL, refuses lone surrogates and numbers beyond a double, and nests
        // without bound; there the two differ on purpose. It decodes half a surrogate pair to what is not UTF-8.
        if (line.contains('\0') || line.contains("\\ud") || line.contains("\\uD") || size > JsonSkim::maxDepth) {
            continue;
        }
        rapidjson::Reader reader;
        Builder tree;
        rapidjson::MemoryStream stream{line.data(), line.size()};
        reader.Parse(stream, tree);
        if (reader.GetParseErrorCode() == rapidjson::kParseErrorNumberTooBig) {
            continue;
        }
        if (reader.HasParseError()) {
            require(!usage);
        } else {
            compare(usage, tree.top.members.front());
        }
    }
    return 0;
}
