// Transcripts and registry entries are written by other programs and may hold anything: whatever comes in, reading
// ends, shown text is UTF-8, and the skimming reader takes for JSON what a complete parser does.

#include "Agents/SessionRegistry.h"
#include "Agents/TranscriptWatcher.h"
#include "Require.h"
#include "Support/JsonSkim.h"
#include "Support/Text.h"

#include <cstdint>
#include <optional>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <string>
#include <string_view>

namespace {

using kippo::JsonSkim;
using kippo::TranscriptWatcher;

void requireShowable(const std::optional<std::string>& text, std::size_t limit) {
    require(!text || (kippo::Text::validUtf8(*text) == *text && !kippo::Text::isLongerThan(*text, limit)));
}

void check(const std::optional<TranscriptWatcher::State>& state) {
    if (!state) {
        return;
    }
    requireShowable(state->prompt, 200);
    requireShowable(state->failure, 200);
    requireShowable(state->cwd, SIZE_MAX);
    requireShowable(state->session, SIZE_MAX);
    requireShowable(state->summary, SIZE_MAX);
    requireShowable(state->markerNeedsYou, SIZE_MAX);
    if (state->activity) {
        requireShowable(state->activity->tool, SIZE_MAX);
        requireShowable(state->activity->detail, SIZE_MAX);
        requireShowable(state->activity->text(), SIZE_MAX);
    }
}

/// Keeps the string when that is all the text is.
struct LastString : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, LastString> {
    std::optional<std::string> string;

    bool Default() {
        string.reset();
        return true;
    }
    bool String(const char* text, rapidjson::SizeType length, bool) {
        string = std::string(text, length);
        return true;
    }
    bool Key(const char*, rapidjson::SizeType, bool) { return true; }
    bool EndObject(rapidjson::SizeType) { return Default(); }
    bool EndArray(rapidjson::SizeType) { return Default(); }
};

void compareWithParser(std::string_view text) {
    // RapidJSON ends its text at a NUL, refuses lone surrogates and numbers beyond a double, and nests without bound;
    // there the two differ on purpose.
    if (text.contains('\0') || text.size() > JsonSkim::maxDepth) {
        return;
    }
    rapidjson::Reader reader;
    LastString parsed;
    rapidjson::MemoryStream stream{text.data(), text.size()};
    reader.Parse(stream, parsed);
    const auto error = reader.GetParseErrorCode();
    JsonSkim json{text};
    const bool whole = json.skip() && json.finished();
    if (error == rapidjson::kParseErrorStringUnicodeSurrogateInvalid || error == rapidjson::kParseErrorNumberTooBig) {
        return;
    }
    require(whole == (error == rapidjson::kParseErrorNone));
    // RapidJSON also writes the second half of a surrogate pair alone, as three bytes that are not UTF-8.
    const bool hasLoneHalf =
        parsed.string && text.contains("\\u") && kippo::Text::validUtf8(*parsed.string) != *parsed.string;
    if (whole && parsed.string && !hasLoneHalf) {
        require(JsonSkim{text}.text()->decoded() == *parsed.string);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto lines = kippo::Text::split(text, '\n');
    check(TranscriptWatcher::parseClaude(lines, "id", kippo::dateFromUnix(0)));
    check(TranscriptWatcher::parseCodex(lines, "id", kippo::dateFromUnix(0)));
    check(TranscriptWatcher::parseGemini(lines, "id", kippo::dateFromUnix(0)));
    kippo::SessionRegistry::parse(text);
    compareWithParser(text);
    for (const auto line : lines) {
        compareWithParser(line);
    }
    return 0;
}
