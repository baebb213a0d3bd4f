#include "App/Terminal/UsageText.h"

#include "App/Terminal/HookFacts.h"
#include "App/Terminal/JsonMembers.h"
#include "Support/LocalTime.h"
#include "Support/Text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <fmt/format.h>
#include <map>
#include <tuple>
#include <vector>

namespace kippo::Terminal {

namespace {

using Totals = UsageScanner::Totals;
using Named = std::pair<std::string, Totals>;

constexpr int daysInReport = static_cast<int>(std::tuple_size_v<decltype(UsageScanner::Report::week)>);
constexpr double barColumns = 24;

/// The first moment of the day that bar `index` of the week stands for.
Date startOfBar(std::size_t index, Date now) {
    return startOfLocalDay(now, static_cast<int>(index) + 1 - daysInReport);
}

/// "Mon 16 Nov".
std::string dayName(Date day) {
    // Noon is in the day whatever the clocks do in its night.
    const auto noon = static_cast<std::time_t>(unixSeconds(day)) + 12 * 3600;
    std::tm local{};
    localtime_r(&noon, &local);
    constexpr std::array days{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array months{"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    return fmt::format("{} {:2} {}", days.at(static_cast<std::size_t>(local.tm_wday)), local.tm_mday,
                       months.at(static_cast<std::size_t>(local.tm_mon)));
}

/// A bar whose length shows `part` of `whole`; whatever is more than nothing can be seen.
std::string bar(double part, double whole) {
    const auto halves = part > 0 && whole > 0 ? std::max(std::lround(part / whole * barColumns * 2), 1L) : 0;
    std::string text;
    for (long column = 0; column < halves / 2; ++column) {
        text += "█";
    }
    return halves % 2 == 1 ? text + "▌" : text;
}

/// The most expensive first; the order of equal ones does not change from call to call.
std::vector<Named> sorted(const std::map<std::string, Totals>& totals) {
    std::vector<Named> result{totals.begin(), totals.end()};
    std::ranges::sort(result, [](const Named& one, const Named& other) {
        return std::tuple{other.second.cost, other.second.tokens, one.first} <
               std::tuple{one.second.cost, one.second.tokens, other.first};
    });
    return result;
}

std::vector<TextTable::Cell> row(std::string name, const Totals& totals, std::string last = {}) {
    const Tone tone = totals == Totals{} ? Tone::faint : Tone::plain;
    return {{std::move(name), tone},
            {Formatters::tokens(totals.tokens), tone},
            {dollars(totals.cost), tone},
            {std::move(last), Tone::working}};
}

std::string sums(const UsageScanner::Report& report, const Style& style) {
    TextTable table{{{.heading = "USAGE"},
                     {.heading = "TOKENS", .alignRight = true},
                     {.heading = "COST", .alignRight = true},
                     {.heading = ""}}};
    table.add(row("Today", report.today));
    table.add(row("Last 5 hours", report.fiveHours));
    return table.render(style);
}

std::string week(const UsageScanner::Report& report, Date now, const Style& style) {
    TextTable table{{{.heading = "WEEK"},
                     {.heading = "TOKENS", .alignRight = true},
                     {.heading = "COST", .alignRight = true},
                     {.heading = "", .minimum = 4, .dropRank = 1}}};
    const auto most = std::ranges::max(report.week, {}, &Totals::cost).cost;
    for (std::size_t index = 0; index < report.week.size(); ++index) {
        const auto& totals = report.week[index];
        table.add(row(index + 1 == report.week.size() ? "Today" : dayName(startOfBar(index, now)), totals,
                      bar(totals.cost, most)));
    }
    return table.render(style);
}

std::string projects(const UsageScanner::Report& report, std::string_view home, const Style& style) {
    TextTable table{{{.heading = "TODAY BY PROJECT", .minimum = 16},
                     {.heading = "TOKENS", .alignRight = true},
                     {.heading = "COST", .alignRight = true},
                     {.heading = "FOLDER", .minimum = 10, .dropRank = 1}}};
    for (const auto& [folder, totals] : sorted(report.byProjectToday)) {
        auto cells = row(std::string{Text::lastPathComponent(folder)}, totals, tilde(folder, home));
        cells.back().tone = Tone::faint;
        table.add(std::move(cells));
    }
    return table.render(style);
}

void writeTotals(JsonMembers& members, const Totals& totals) {
    members.whole("tokens", totals.tokens);
    members.number("cost", totals.cost);
}

} // namespace

std::string dollars(double amount) {
    constexpr double smallestShown = 0.005;
    return amount > 0 && amount < smallestShown ? "<$0.01" : fmt::format("${:.2f}", amount);
}

std::string usageText(const UsageScanner::Report& report, std::string_view home, Date now, const Style& style) {
    if (std::ranges::all_of(report.week, [](const Totals& day) { return day == Totals{}; }) &&
        report.fiveHours == Totals{}) {
        return "Claude Code recorded no usage in the last seven days.\n";
    }
    auto text = sums(report, style) + "\n" + week(report, now, style);
    if (!report.byProjectToday.empty()) {
        text += "\n" + projects(report, home, style);
    }
    return text + "\n" +
           toned("Claude Code's tokens; cost is what they would cost at the API's published prices.", Tone::faint,
                 style) +
           "\n";
}

std::string usageJson(const UsageScanner::Report& report, Date now) {
    std::string text;
    Json::Writer writer{text};
    writer.beginObject();
    JsonMembers members{writer};
    const auto total = [&](std::string_view key, const Totals& totals) {
        writer.key(key).beginObject();
        writeTotals(members, totals);
        writer.endObject();
    };
    total("today", report.today);
    total("fiveHours", report.fiveHours);
    std::size_t index = 0;
    members.list("week", report.week, [&](const Totals& totals) {
        writer.beginObject();
        members.date("day", startOfBar(index++, now));
        writeTotals(members, totals);
        writer.endObject();
    });
    const auto breakdown = [&](std::string_view key, std::string_view name, const auto& totals) {
        members.list(key, sorted(totals), [&](const Named& one) {
            writer.beginObject();
            members.text(name, one.first);
            writeTotals(members, one.second);
            writer.endObject();
        });
    };
    breakdown("byProjectToday", "cwd", report.byProjectToday);
    breakdown("bySessionToday", "session", report.bySessionToday);
    writer.endObject();
    return text;
}

} // namespace kippo::Terminal
