#include "Support/Json.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <utility>
#include <vector>

namespace kippo {

namespace {

/// Writes down all that it is told, one word per value.
struct Notes final : Json::Visitor {
    std::string text;

    void note(Json::Path path, std::string_view what) {
        for (const auto& step : path) {
            text += step.index >= 0 ? "[" + std::to_string(step.index) + "]" : "/" + std::string{step.key};
        }
        text += "=" + std::string{what} + " ";
    }
    bool value(Json::Path path, Json::Kind kind, std::string_view what) override {
        note(path, kind == Json::Kind::string ? "'" + std::string{what} + "'" : what);
        return what != "stop";
    }
    bool begin(Json::Path path, Json::Kind kind) override {
        note(path, kind == Json::Kind::object ? "{" : "[");
        return true;
    }
};

struct Read {
    Json::Outcome outcome;
    std::string notes;
};

Read read(std::string text) {
    Notes notes;
    const auto outcome = Json::read(text, notes);
    return {outcome, notes.text};
}

std::string written(std::string_view text) {
    std::string out;
    Json::Writer{out}.string(text);
    return out;
}

} // namespace

TEST(Json, TellsEachValueWithItsPlace) {
    EXPECT_EQ(read(R"( {"a":{"b":[1.50,[true],{"c":null}]},"a":"x\n","":-0} )").notes,
              "={ /a={ /a/b=[ /a/b[0]=1.50 /a/b[1]=[ /a/b[1][0]=true /a/b[2]={ /a/b[2]/c=null /a='x\n' /=-0 ");
    EXPECT_EQ(read(R"([[],[],"z"])").notes, "=[ [0]=[ [1]=[ [2]='z' ");
    EXPECT_EQ(read("3").notes, "=3 ");
    const std::array<Json::Step, 3> path{{{"a", -1}, {"", 4}, {"[]", -1}}};
    EXPECT_FALSE(Json::matches(path, {"a", "[]", "[]"})) << "a member of that name is no element";
    EXPECT_TRUE(Json::matches(Json::Path{path}.first(2), {"a", "[]"}));
    EXPECT_FALSE(Json::matches(path, {"a", "[]"}));
}

TEST(Json, KnowsWhatIsWhole) {
    using enum Json::Outcome;
    const std::string zero(1, '\0');
    EXPECT_EQ(read(R"(["stop",{{{)").outcome, stopped);
    for (const std::string& text :
         {std::string{"{}"}, std::string{" [1] \r\n\t"}, std::string(100'000, '[') + std::string(100'000, ']')}) {
        EXPECT_EQ(read(text).outcome, complete) << text.substr(0, 40);
    }
    for (const std::string& text : std::vector<std::string>{
             "", "  ", "{", R"({"a":1)", R"({"a":1}})", "{} {}", R"({"a":1,})", "{'a':1}", R"("ab)", R"("\x")",
             R"("\u12")", "\"a\nb\"", "01", "nul", "{}" + zero, "{}" + zero + "{}", "\"a" + zero + "\"",
             std::string(Json::maxDepth + 1, '['), std::string(1'000'000, '[')}) {
        EXPECT_EQ(read(text).outcome, malformed) << text.substr(0, 40);
    }
    const std::string deep =
        std::string(Json::maxReportedDepth, '[') + "1,[2]" + std::string(Json::maxReportedDepth, ']');
    EXPECT_TRUE(read(deep).notes.contains("=1 "));
    EXPECT_FALSE(read(deep).notes.contains("=2 "));
}

TEST(Json, ReadsHalvesOfSurrogatePairsAsReplacements) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {R"(\ud83d\ude00)", "😀"},
        {R"(\uD83D\uDE00)", "😀"},
        {R"(cut \ud83d)", "cut \uFFFD"},
        {R"(\ude00 first)", "\uFFFD first"},
        {R"(\ud83d\ud83d\ude00)", "\uFFFD😀"},
        {R"(\ud83dx\ude00)", "\uFFFDx\uFFFD"},
        {R"(\ud83d\n)", "\uFFFD\n"},
        {R"(\\ud83d)", R"(\ud83d)"},
        {R"(\\\ud83d)", "\\\uFFFD"},
        {R"(\ud7ff\ue000)", "\uD7FF\uE000"},
    };
    for (const auto& [escaped, text] : cases) {
        for (const std::size_t before : {0U, 4093U, 4094U, 4095U, 5000U}) {
            const std::string filler(before, 'x');
            EXPECT_EQ(read('"' + filler + escaped + '"').notes, "='" + filler + text + "' ") << escaped << before;
        }
    }
    EXPECT_EQ(read(R"("\ud83)").outcome, Json::Outcome::malformed);
}

TEST(Json, WritesWhatEveryReaderTakes) {
    EXPECT_EQ(written("a\"\\/\n\r\t\x01\x1F\x7F é😀"), R"("a\"\\/\n\r\t\u0001\u001f)"
                                                       "\x7F é😀\"");
    EXPECT_EQ(written(std::string{"\0\xFF\xE2\x82", 4}), "\"\\u0000\uFFFD\uFFFD\uFFFD\"");
    std::string out;
    Json::Writer writer{out};
    writer.beginObject().key("a").beginArray().number(std::int64_t{-5}).beginObject().endObject().boolean(true).null();
    writer.endArray().key("b").number(1795230000.25).key("c").number(std::numeric_limits<double>::infinity());
    writer.key("d").beginArray().endArray().endObject();
    EXPECT_EQ(out, R"({"a":[-5,{},true,null],"b":1795230000.25,"c":null,"d":[]})");
    EXPECT_EQ(Json::toDouble("1795230000.25"), 1795230000.25);
    EXPECT_EQ(Json::toDouble("1e3"), 1000.0);
    EXPECT_FALSE(Json::toDouble("1x"));
}

} // namespace kippo
