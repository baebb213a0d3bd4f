#include "Agents/HookBridge.h"

#include "Support/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kippo {

namespace {

constexpr Date now = dateFromUnix(1795230000.25);

std::string repeated(std::string_view text, std::size_t count) {
    std::string all;
    for (; count > 0; --count) {
        all += text;
    }
    return all;
}

/// The line's members behind "t", for an input with an event, a session and `members`; "" when there is no line.
std::string recorded(const std::string& members, std::string_view agent = "") {
    const std::string input =
        R"({"hook_event_name":"Stop","session_id":"s1")" + (members.empty() ? "" : "," + members) + "}";
    const std::string line = HookBridge::record(input, agent, now).value_or("");
    constexpr std::string_view start = R"({"t":1795230000.25,"e":"Stop","s":"s1","a":"claude")";
    EXPECT_TRUE(line.starts_with(start) && line.ends_with("}\n")) << line;
    return line.size() < start.size() + 2 ? line : line.substr(start.size(), line.size() - start.size() - 2);
}

std::string detail(const std::string& toolInput) {
    const auto line = HookBridge::record(
        R"({"hook_event_name":"PreToolUse","session_id":"s","tool_input":)" + toolInput + "}", "", now);
    const auto event = HookBridge::parse(Text::trimmed(line.value_or("")));
    EXPECT_TRUE(event) << toolInput;
    return event && event->detail ? *event->detail : "(none)";
}

struct Case {
    std::string given;
    std::string expected;
};

} // namespace

TEST(HookBridge, ReducesAnInputToItsLine) {
    const std::vector<Case> cases{
        {"", ""},
        {R"("cwd":"/w","tool_name":"Bash","tool_input":{"command":"ls"},"other":[1,{"cwd":"/x"}])",
         R"(,"c":"/w","tool":"Bash","d":"ls")"},
        {R"("message":"hi","notification_type":"idle_prompt")", R"(,"m":"hi","n":"idle_prompt")"},
        {R"("prompt":"do\nit","last_assistant_message":"")", R"(,"p":"do\nit","r":"")"},
        {R"("prompt":"")", ""},
        {R"("cwd":1,"tool_name":null,"message":["x"],"notification_type":{},"prompt":true,"last_assistant_message":-1.5e3)",
         ""},
        {R"("tool_input":"ls")", ""},
        {R"("tool_input":["ls"])", ""},
        {R"("cwd":"/a","cwd":"/b","message":"x","message":2)", R"(,"c":"/b")"},
        {R"("tool_input":{"command":"a"},"tool_input":{"file_path":"/b"})", R"(,"d":"/b")"},
        {R"("tool_input":{"command":"a"},"tool_input":7)", ""},
        {R"("agent_id":"a1","prompt":"find it","last_assistant_message":"found","tool_name":"Grep")",
         R"(,"tool":"Grep")"},
        {R"("agent_id":null,"prompt":"find it")", R"(,"p":"find it")"},
        {R"("cwd":"/\ud83d\u0000\"é)"
         "\xFF\"",
         ",\"c\":\"/\uFFFD\\u0000\\\"é\uFFFD\""},
    };
    for (const auto& [members, expected] : cases) {
        EXPECT_EQ(recorded(members), expected) << members;
    }
}

TEST(HookBridge, WritesNothingForWhatIsNoEvent) {
    for (const std::string input :
         {"", " ", "null", "[]", "\"x\"", "{}", R"({"hook_event_name":"Stop"})", R"({"session_id":"s"})",
          R"({"hook_event_name":1,"session_id":"s"})", R"({"hook_event_name":"Stop","session_id":null})",
          R"({"hook_event_name":"Stop","session_id":"s")", R"({"hook_event_name":"Stop","session_id":"s","x":1e400x})",
          R"({"hook_event_name":"Stop","session_id":"s"}x)", R"([{"hook_event_name":"Stop","session_id":"s"}])",
          R"({"hook_event_name":"Stop","session_id":"s","hook_event_name":2})"}) {
        EXPECT_FALSE(HookBridge::record(input, "cursor", now)) << input;
    }
}

TEST(HookBridge, CutsByWhatPeopleCallACharacter) {
    for (const std::string c : {"x", "é", "e\u0301", "👨‍👩‍👧‍👦", "🇳🇴", "👍🏽", "각"}) {
        EXPECT_EQ(recorded("\"prompt\":\"" + repeated(c, 500) + "\""), ",\"p\":\"" + repeated(c, 300) + "\"") << c;
        EXPECT_EQ(recorded("\"message\":\"" + repeated(c, 240) + "\""), ",\"m\":\"" + repeated(c, 240) + "\"") << c;
        EXPECT_EQ(recorded("\"last_assistant_message\":\"" + repeated(c, 241) + "\""),
                  ",\"r\":\"" + repeated(c, 240) + "\"")
            << c;
    }
}

TEST(HookBridge, ReadsTheNamesOfTheAgentThatTheCommandLineTells) {
    struct AgentCase {
        std::string agent, members, expected;
    };
    const std::string cursor =
        R"("conversation_id":"c1","workspace_roots":["/w","/v"],"command":"make","text":"Done.")";
    const std::vector<AgentCase> cases{
        {"claude", cursor, ""},
        {"", cursor, ""},
        {"gemini", cursor, R"(,"g":"gemini")"},
        {"cursor", cursor, R"(,"c":"/w","d":"make","r":"Done.","g":"cursor")"},
        {"cursor", cursor + R"(,"cwd":"/own","tool_input":{"command":"ls"},"last_assistant_message":"own")",
         R"(,"c":"/own","d":"ls","r":"own","g":"cursor")"},
        {"cursor", R"("file_path":"/w/a.c","workspace_roots":[]  )", R"(,"d":"/w/a.c","g":"cursor")"},
        {"cursor", R"("agent_id":"x","text":"t")", R"(,"g":"cursor")"},
        {"gemini", R"("prompt_response":"All ran.")", R"(,"r":"All ran.","g":"gemini")"},
        {"claude", R"("prompt_response":"All ran.")", ""},
        {"codex", "", R"(,"g":"codex")"},
        {"my\"own\xFF", "", ",\"g\":\"my\\\"own\uFFFD\""},
    };
    for (const auto& [agent, members, expected] : cases) {
        EXPECT_EQ(recorded(members, agent), expected) << agent << ": " << members;
    }
    const std::string onlyConversation = R"({"hook_event_name":"stop","conversation_id":"c1"})";
    EXPECT_EQ(HookBridge::record(onlyConversation, "cursor", now),
              R"({"t":1795230000.25,"e":"stop","s":"c1","a":"claude","g":"cursor"})"
              "\n");
    EXPECT_FALSE(HookBridge::record(onlyConversation, "codex", now));
}

TEST(HookBridge, NamesTheSubjectOfEachToolCall) {
    const std::string longPath = "/" + repeated("folder/", 60) + "file.cpp";
    const std::vector<Case> cases{
        {R"({"description":"List the files","command":"  \n ls -l\n rm x"})", "ls -l"},
        {R"({"command":["bash","-lc","git status"],"workdir":"/w"})", "git status"},
        {R"({"command":["/bin/zsh","-l","-c","a b\nc"]})", "a b"},
        {R"({"command":["git","commit","-m","it's two\nlines",""]})", R"(git commit -m 'it'\''s two lines' '')"},
        {R"({"command":["bash","-c"]})", "bash -c"},
        {R"({"command":["ls",7,null]})", "ls"},
        {R"({"cmd":"cargo test"})", "cargo test"},
        {R"({"command":"*** Begin Patch\n*** Update File: src/a b.c\n@@\n-x"})", "src/a b.c"},
        {R"({"command":["apply_patch","*** Begin Patch\n*** Add File: n.c\n+x"]})", "n.c"},
        {R"({"content":"…","file_path":"/w/a.c"})", "/w/a.c"},
        {R"({"file_path":"/w/a.c","old_string":"command","new_string":"x"})", "/w/a.c"},
        {R"({"notebook_path":"/w/n.ipynb","cell_id":"c"})", "/w/n.ipynb"},
        {R"({"path":"/w","pattern":"TODO","glob":"*.c"})", "TODO"},
        {R"({"dir_path":"src"})", "src"},
        {R"({"absolute_path":"/w/a.c"})", "/w/a.c"},
        {R"({"prompt":"Summarise","url":"https://example.com/a"})", "https://example.com/a"},
        {R"({"query":"weather"})", "weather"},
        {R"({"prompt":"Look at…","description":"Find the bug","subagent_type":"Explore"})", "Find the bug"},
        {R"({"skill":"review","args":"x"})", "review"},
        {R"({"questions":[{"header":"h","question":"Which port?"},{"question":"And why?"}]})", "Which port?"},
        {R"({"include":["src/**","x"]})", "src/**"},
        {R"({"command":"","file_path":" ","path":"p"})", "p"},
        {R"({"command":{"command":"x"},"todos":[{"content":"y"}]})", "(none)"},
        {R"({"command":"x","command":{}})", "(none)"},
        {R"({"command":["a","b"],"command":"c"})", "c"},
        {R"({"command":"c","command":["a","b"]})", "a b"},
        {"{}", "(none)"},
        {"{\"command\":\"" + repeated("é", 300) + "\"}", repeated("é", 200)},
        {"{\"file_path\":\"" + longPath + "\"}", "file.cpp"},
    };
    for (const auto& [input, expected] : cases) {
        EXPECT_EQ(detail(input), expected) << input;
    }
}

TEST(HookBridge, ReadsBackEveryField) {
    const auto event = HookBridge::parse(
        R"({"t":1795230000.25,"e":"Stop","s":"s1","a":"gemini","c":"/w","tool":"T","m":"M","n":"N","st":"error","p":"P","d":"D","r":"R","g":"cursor"})");
    ASSERT_TRUE(event);
    EXPECT_EQ(*event, (HookBridge::Event{now, "Stop", "s1", HookAgent::gemini, "/w", "M", "T", "N", "error", "P", "D",
                                         "R", "cursor"}));
    EXPECT_EQ(event->judgedBy(), HookAgent::cursor);

    const auto bare = HookBridge::parse(R"({"t":1,"e":"","a":"nobody","c":1,"m":null,"r":{"r":"x"},"p":[],"g":7})");
    ASSERT_TRUE(bare);
    HookBridge::Event nothingElse;
    nothingElse.time = dateFromUnix(1);
    EXPECT_EQ(*bare, nothingElse);
}

TEST(HookBridge, SkipsDamagedLines) {
    for (const std::string line :
         {"", "x", "[1]", "{}", R"({"e":"Stop"})", R"({"t":"1","e":"Stop"})", R"({"t":1,"e":2})", R"({"t":1,"e":"St)",
          R"({"t":1,"e":"Stop"}})", R"({"t":1,"t":"2","e":"Stop"})",
          R"({"t":1,"e":"Stop","p":"{\"t\":1,\"e\":\"Stop\"})", R"(x{"t":1,"e":"Stop"})"}) {
        EXPECT_FALSE(HookBridge::parse(line)) << line;
    }
    EXPECT_EQ(HookBridge::parse("{\"t\":1,\"e\":\"\xFF\"}")->name, "\uFFFD");
    const std::string whole = R"({"t":2,"e":"Stop","s":"b"})";
    for (const std::string half : {R"({"t":1,"e":"St)", R"({"t":1,"e":"Stop","s":"a"})", R"({"t)", "{"}) {
        const auto event = HookBridge::parse(half + whole);
        ASSERT_TRUE(event) << half;
        EXPECT_EQ(event->session, "b") << "the line behind a half one, left by a full disk, is not lost";
    }
}

TEST(HookBridge, SurvivesDeepNesting) {
    for (const std::size_t depth : {1000U, 100'000U}) {
        const std::string nested = repeated("[", depth) + repeated("]", depth);
        EXPECT_EQ(recorded("\"x\":" + nested), "");
    }
    EXPECT_FALSE(HookBridge::record(
        R"({"hook_event_name":"Stop","session_id":"s","x":)" + repeated("{\"a\":", 2'000'000), "", now));
}

TEST(HookBridge, KnowsItsFlags) {
    const auto agent = [](std::vector<const char*> words) -> std::optional<std::string> {
        const std::span arguments{const_cast<char**>(words.data()), words.size()};
        return HookBridge::isHookInvocation(arguments) ? std::optional<std::string>{HookBridge::agentName(arguments)}
                                                       : std::nullopt;
    };
    EXPECT_EQ(agent({"kippo", "--agent", "gemini", "--varde-hook"}), "gemini");
    EXPECT_EQ(agent({"kippo", "--kippo-hook", "--agent"}), "");
    EXPECT_EQ(agent({"kippo", "--kippo-hooks", "kippo-hook", ""}), std::nullopt);
    EXPECT_EQ(agent({}), std::nullopt);
}

} // namespace kippo
