#include "Settings/Views/PlannedChange.h"

#include "Support/TextDiff.h"
#include "Theme/Texts.h"

#include <algorithm>

namespace kippo {

namespace {

/// A line as it stands, but for what a view cannot show: its tabs become four spaces, and a very long one is cut.
QString shownLine(std::string_view text) {
    constexpr qsizetype longest = 1000;
    QString line = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    line.replace(u'\t', QStringLiteral("    ")).remove(u'\r');
    return line.size() > longest ? line.left(longest) + u'…' : line;
}

QString counted(std::ptrdiff_t count, const QString& what) {
    return QStringLiteral("%1 %2 %3")
        .arg(count)
        .arg(count == 1 ? QStringLiteral("line") : QStringLiteral("lines"), what);
}

/// "30 lines added, 2 lines removed"; only what there is.
QString summed(const std::vector<DiffLine>& lines) {
    const auto added = std::ranges::count(lines, '+', &DiffLine::mark);
    const auto removed = std::ranges::count(lines, '-', &DiffLine::mark);
    QStringList parts;
    if (added > 0) {
        parts.append(counted(added, QStringLiteral("added")));
    }
    if (removed > 0) {
        parts.append(counted(removed, QStringLiteral("removed")));
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace

PlannedChange::PlannedChange(const std::expected<HookBridge::Change, HookBridge::InstallError>& planned,
                             const QString& file)
    : file_(file), isImpossible_(!planned) {
    if (!planned) {
        summary_ = oneLine(planned.error().description());
        return;
    }
    const std::vector<DiffLine> lines = diffLines(planned->before, planned->after);
    summary_ = lines.empty() ? QStringLiteral("Nothing would change.") : summed(lines);
    if (!planned->existed && !lines.empty()) {
        summary_ = QStringLiteral("A new file, %1").arg(summary_);
    }
    for (const DiffLine& line : lines) {
        if (line.mark == '@') {
            if (!lines_.empty()) {
                lines_.push_back({QStringLiteral("@"), QStringLiteral("⋯")});
            }
        } else {
            lines_.push_back({line.mark == ' ' ? QString{} : QString{QLatin1Char{line.mark}}, shownLine(line.text)});
        }
    }
}

int PlannedChange::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

QVariant PlannedChange::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Line& line = lines_[static_cast<std::size_t>(index.row())];
    return role == markRole ? line.mark : role == lineRole ? QVariant{line.text} : QVariant{};
}

QHash<int, QByteArray> PlannedChange::roleNames() const { return {{markRole, "mark"}, {lineRole, "line"}}; }

} // namespace kippo
