#include "Support/JsonSkim.h"
#include "Support/Text.h"

#include <gtest/gtest.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <vector>

namespace kippo {

TEST(JsonSkim, AcceptsExactlyWhatIsJson) {
    // One text between each two bars, then those that hold what a line cannot.
    constexpr std::string_view onALine =
        R"({}|[]| [ ] | |null|nul|true|falsey|-0|01|1.|1.5e-7|-|+1|1e|.5|""|"a|"\|"\x"|"\u12G4"|"\u00e9"|{"a":1})"
        R"(|{"a":1,}|{"a"}|{"a":}|{a:1}|{"a":1 "b":2}|{1:2}|{"a":1}x|{}{}|[1,]|[1 2]|[,]|[}|{]|[[]|[]]|["])"
        R"(|[{"a":[{}]}]|{"a":[1,{"b":"}]"}],"c":"\""}|["a\\"]|["a\\\"]|["0123456789abcdef\"0123456789abcdef", 1])"
        R"(|"0123456789abcde"|"0123456789abcdef")";
    auto texts = Text::split(onALine, '|');
    texts.insert(texts.end(), {"", "\"a\nb\"", "\"a\tb\"", "[\"0123456789abcdef\x01\"]"});
    for (const auto& text : texts) {
        rapidjson::Reader parser;
        rapidjson::BaseReaderHandler<> ignored;
        rapidjson::MemoryStream stream{text.data(), text.size()};
        parser.Parse(stream, ignored);
        JsonSkim json{text};
        EXPECT_EQ(json.skip() && json.finished(), !parser.HasParseError()) << text;
    }
    const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_TRUE(JsonSkim{nested(JsonSkim::maxDepth)}.skip());
    EXPECT_FALSE(JsonSkim{nested(JsonSkim::maxDepth + 1)}.skip());
    EXPECT_FALSE(JsonSkim{std::string(1000000, '{')}.skip());
}

TEST(JsonSkim, ReadsTheMembersThatAreWanted) {
    std::string seen;
    JsonSkim json{R"( {"skip" : {"text":"no","n":[1,{"x":"]}"}]}, "t\u0065xt":"a\"b\n\ud83d\ude00\udc00", "yes":true,
        "list":[1,"two",[3],{"n":4}], "count":-42, "half":1.5, "huge":99999999999999999999, "other":[1, {"a":"b"}] } )"};
    EXPECT_TRUE(json.object([&](const JsonText& key) {
        if (key == "text") {
            seen += json.text()->decoded();
        } else if (key == "yes") {
            seen += json.flag() ? "|yes" : "|no";
        } else if (key == "list") {
            json.array([&] {
                if (json.peek() == JsonSkim::Kind::string) {
                    seen += "|" + json.text()->decoded();
                }
            });
        } else if (key == "count") {
            seen += "|" + std::to_string(json.integer().value_or(0));
        } else if (key == "half" || key == "huge") {
            seen += json.integer() ? "|?" : "|none";
        } else if (key == "other") {
            seen += "|" + std::string{json.value()};
        }
    }));
    EXPECT_TRUE(json.finished());
    EXPECT_EQ(seen, "a\"b\n😀\uFFFD|yes|two|-42|none|none|[1, {\"a\":\"b\"}]");
}

TEST(JsonSkim, OtherKindsAreSkippedAndErrorsStick) {
    JsonSkim json{R"([1, "two", {"a":1}])"};
    int items = 0;
    EXPECT_TRUE(json.array([&] {
        ++items;
        EXPECT_FALSE(json.object([](const JsonText&) {}) && items < 3);
    }));
    EXPECT_EQ(items, 3);
    JsonSkim broken{R"({"a":[1,}, "b":2})"};
    EXPECT_FALSE(broken.object([&](const JsonText& key) { EXPECT_EQ(key, "a"); }));
    EXPECT_TRUE(broken.failed());
    EXPECT_FALSE(broken.text());
    EXPECT_TRUE(broken.value().empty());
}

} // namespace kippo
