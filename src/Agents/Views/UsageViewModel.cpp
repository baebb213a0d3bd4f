#include "Agents/Views/UsageViewModel.h"

#include "Agents/AgentModels.h"
#include "Theme/Texts.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <array>
#include <tuple>

namespace kippo {

namespace {

using Totals = UsageScanner::Totals;

constexpr std::array projectRoles{
    KeyedListModel<ProjectUsageRow>::Role{"name", [](const ProjectUsageRow& row) { return QVariant{row.name}; }},
    KeyedListModel<ProjectUsageRow>::Role{"tokens", [](const ProjectUsageRow& row) { return QVariant{row.tokens}; }},
    KeyedListModel<ProjectUsageRow>::Role{"cost", [](const ProjectUsageRow& row) { return QVariant{row.cost}; }},
    KeyedListModel<ProjectUsageRow>::Role{"share", [](const ProjectUsageRow& row) { return QVariant{row.share}; }},
    KeyedListModel<ProjectUsageRow>::Role{"spoken", [](const ProjectUsageRow& row) { return QVariant{row.spoken}; }},
};

constexpr std::array dayRoles{
    KeyedListModel<DayRow>::Role{"letter", [](const DayRow& row) { return QVariant{row.letter}; }},
    KeyedListModel<DayRow>::Role{"amounts", [](const DayRow& row) { return QVariant{row.amounts}; }},
    KeyedListModel<DayRow>::Role{"share", [](const DayRow& row) { return QVariant{row.share}; }},
    KeyedListModel<DayRow>::Role{"isToday", [](const DayRow& row) { return QVariant{row.isToday}; }},
};

QString cost(double dollars) { return QString::fromStdString(Formatters::cost(dollars)); }

QString tokens(std::int64_t count) {
    return QString::fromStdString(Formatters::tokens(count)) +
           (count == 1 ? QStringLiteral(" token") : QStringLiteral(" tokens"));
}

QString amounts(const Totals& totals) { return tokens(totals.tokens) + QStringLiteral(", ") + cost(totals.cost); }

/// By cost; by tokens where nothing costs anything.
double shareOf(const Totals& part, const Totals& highest) {
    if (highest.cost > 0) {
        return part.cost / highest.cost;
    }
    return highest.tokens > 0 ? static_cast<double>(part.tokens) / static_cast<double>(highest.tokens) : 0;
}

QString nameOf(const std::string& folder) {
    const std::size_t slash = folder.find_last_of('/');
    const std::string last = slash == std::string::npos ? folder : folder.substr(slash + 1);
    return oneLine(last.empty() ? folder : last);
}

} // namespace

UsageViewModel::UsageViewModel(QObject* parent) : QObject(parent), projects_(projectRoles), week_(dayRoles) {
    show({}, false, distantPast);
}

void UsageViewModel::show(const UsageScanner::Report& report, bool isKnown, Date now) {
    todayCost_ = isKnown ? cost(report.today.cost) : QStringLiteral("–");
    todayTokens_ = isKnown ? tokens(report.today.tokens) : QStringLiteral("Counting the week's tokens…");
    fiveHours_ = isKnown ? amounts(report.fiveHours) + QStringLiteral(" in the last 5 hours") : QString{};
    statusText_ = isKnown && report.byProjectToday.empty() ? QStringLiteral("Nothing used yet today.") : QString{};
    showWeek(report, isKnown, now);
    showProjects(report);
    emit changed();
}

void UsageViewModel::showWeek(const UsageScanner::Report& report, bool isKnown, Date now) {
    constexpr int days = 7;
    const QDate today = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(unixSeconds(now))).date();
    const QLocale english{QLocale::English};
    const Totals highest{std::ranges::max(report.week, {}, &Totals::tokens).tokens,
                         std::ranges::max(report.week, {}, &Totals::cost).cost};
    double sum = 0;
    std::vector<DayRow> rows;
    for (int day = 0; day < days; ++day) {
        const Totals& totals = report.week[static_cast<std::size_t>(day)];
        const int weekday = today.addDays(day - days + 1).dayOfWeek();
        const QString name =
            day == days - 1 ? QStringLiteral("Today") : english.standaloneDayName(weekday, QLocale::ShortFormat);
        rows.push_back({QString::number(day), english.standaloneDayName(weekday).left(1),
                        isKnown ? name + QStringLiteral(": ") + amounts(totals) : name, shareOf(totals, highest),
                        day == days - 1});
        sum += totals.cost;
    }
    weekText_ = isKnown ? cost(sum) + QStringLiteral(" in 7 days") : QString{};
    week_.show(std::move(rows));
}

void UsageViewModel::showProjects(const UsageScanner::Report& report) {
    std::vector<std::pair<std::string, Totals>> projects{report.byProjectToday.begin(), report.byProjectToday.end()};
    std::ranges::sort(projects, {}, [](const auto& project) {
        return std::tuple{-project.second.cost, -project.second.tokens, project.first};
    });
    Totals highest;
    for (const auto& [folder, totals] : projects) {
        highest = {std::max(highest.tokens, totals.tokens), std::max(highest.cost, totals.cost)};
    }
    std::vector<ProjectUsageRow> rows;
    for (const auto& [folder, totals] : projects) {
        ProjectUsageRow row;
        row.id = QString::fromStdString(folder);
        row.name = nameOf(folder);
        row.tokens = tokens(totals.tokens);
        row.cost = cost(totals.cost);
        row.share = shareOf(totals, highest);
        row.spoken = spokenLine({row.name, row.tokens, row.cost});
        rows.push_back(std::move(row));
    }
    projects_.show(std::move(rows));
}

} // namespace kippo
