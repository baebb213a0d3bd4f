// What the shells are told may come next.

#include "App/Terminal/Completion.h"

#include <gtest/gtest.h>

namespace kippo::Terminal {
namespace {

constexpr Command commands[] = {
    {.name = "show", .options = "--json", .usage = "  kippo show    print it\n  kippo show --json    as JSON\n"},
    {.name = "open", .options = "", .takesWords = true, .usage = "  kippo open agents|focus    open a page\n"},
    {.name = "hooks",
     .options = "--dry-run",
     .takesWords = true,
     .usage = "  kippo hooks    see “kippo hooks --help”\n",
     .help = "  kippo hooks install [AGENT…]    connect\n  kippo hooks prompt AGENT    print\n"
             "  kippo hooks … --dry-run    only tell\n"},
    {.name = "tidy", .takesWords = true, .usage = "  kippo tidy FOLDER…    clear\n"},
    {.name = "wait", .takesWords = true, .usage = "  kippo wait [MINUTES]    rest\n"},
};

/// The words without what they mean, each behind a blank.
std::string words(std::vector<std::string_view> typed) {
    std::string found;
    std::string_view rest;
    const std::string lines = completions(typed, commands);
    for (rest = lines; !rest.empty(); rest.remove_prefix(rest.find('\n') + 1)) {
        found.append(" ").append(rest.substr(0, rest.find_first_of("\t\n")));
    }
    return found;
}

TEST(Completion, SaysWhatTheHelpSays) {
    const struct {
        std::vector<std::string_view> typed;
        std::string expected;
    } cases[] = {
        {{""}, " show open hooks tidy wait"},
        {{"s"}, " show"},
        {{"--v"}, " --version"},
        {{"nothing", ""}, ""},
        {{}, ""},
        {{"show", ""}, " --json --help"},
        {{"show", "--json", "-"}, " --help"},
        {{"open", ""}, " agents focus"},
        {{"open", "focus", ""}, " --help"},
        {{"hooks", ""}, " install prompt"},
        {{"hooks", "-"}, " --dry-run --help"},
        {{"hooks", "install", "--dry-run", "codex", "c"}, " claude cursor"},
        {{"hooks", "prompt", "gemini", "c"}, ""},
        {{"tidy", "one", ""}, " :folder"},
        {{"wait", ""}, " --help"},
    };
    for (const auto& [typed, expected] : cases) {
        EXPECT_EQ(words(typed), expected) << testing::PrintToString(typed);
    }
    EXPECT_EQ(completions(std::vector<std::string_view>{"op"}, commands), "open\topen a page\n");
}

} // namespace
} // namespace kippo::Terminal
