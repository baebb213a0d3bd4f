#include "App/Terminal/LeftoversText.h"

#include "App/Terminal/HookFacts.h"
#include "App/Terminal/JsonMembers.h"

#include <algorithm>
#include <fmt/format.h>
#include <numeric>

namespace kippo::Terminal {

namespace {

std::int64_t totalKB(const std::vector<Leftover>& leftovers) {
    return std::accumulate(leftovers.begin(), leftovers.end(), std::int64_t{0},
                           [](std::int64_t sum, const Leftover& one) { return sum + one.sizeKB; });
}

} // namespace

std::string leftoversText(const std::vector<Leftover>& leftovers, std::string_view home, const Style& style) {
    if (leftovers.empty()) {
        return "Nothing big found.\n";
    }
    TextTable table{{{.heading = "SIZE", .alignRight = true},
                     {.heading = "PROJECT", .minimum = 12, .dropRank = 1},
                     {.heading = "FOLDER"}}};
    for (const auto& leftover : leftovers) {
        table.add({{Formatters::memory(leftover.sizeKB), Tone::plain},
                   {leftover.project, Tone::plain},
                   {tilde(leftover.path, home), Tone::faint}});
    }
    const auto sum =
        fmt::format("{} in {} folder{}. All of it can be built or fetched again; “kippo leftovers trash "
                    "FOLDER…” moves it to the Trash.",
                    Formatters::memory(totalKB(leftovers)), leftovers.size(), leftovers.size() == 1 ? "" : "s");
    return table.render(style) + "\n" + toned(sum, Tone::faint, style) + "\n";
}

std::string leftoversJson(const std::vector<Leftover>& leftovers) {
    std::string text;
    Json::Writer writer{text};
    writer.beginObject();
    JsonMembers members{writer};
    members.list("leftovers", leftovers, [&](const Leftover& leftover) {
        writer.beginObject();
        members.text("path", leftover.path);
        members.whole("sizeKB", leftover.sizeKB);
        members.text("project", leftover.project);
        writer.endObject();
    });
    members.whole("totalKB", totalKB(leftovers));
    writer.endObject();
    return text;
}

} // namespace kippo::Terminal
