#include "Agents/Views/LeftBehindViewModel.h"

#include "Agents/Views/SessionDetail.h"
#include "Theme/Texts.h"

#include <algorithm>
#include <array>

namespace kippo {

namespace {

using State = StopConfirmation::State;

constexpr std::size_t mostPortsOfProcess = 3;

constexpr std::array processRoles{
    KeyedListModel<LeftRunningRow>::Role{"pid", [](const LeftRunningRow& row) { return QVariant{row.pid}; }},
    KeyedListModel<LeftRunningRow>::Role{"name", [](const LeftRunningRow& row) { return QVariant{row.name}; }},
    KeyedListModel<LeftRunningRow>::Role{"folder", [](const LeftRunningRow& row) { return QVariant{row.folder}; }},
    KeyedListModel<LeftRunningRow>::Role{"ports",
                                         [](const LeftRunningRow& row) { return QVariant::fromValue(row.ports); }},
    KeyedListModel<LeftRunningRow>::Role{"morePorts",
                                         [](const LeftRunningRow& row) { return QVariant{row.morePorts}; }},
    KeyedListModel<LeftRunningRow>::Role{"age", [](const LeftRunningRow& row) { return QVariant{row.age}; }},
    KeyedListModel<LeftRunningRow>::Role{"memory", [](const LeftRunningRow& row) { return QVariant{row.memory}; }},
    KeyedListModel<LeftRunningRow>::Role{"stopLabel",
                                         [](const LeftRunningRow& row) { return QVariant{row.stopLabel}; }},
    KeyedListModel<LeftRunningRow>::Role{"isAsking", [](const LeftRunningRow& row) { return QVariant{row.isAsking}; }},
    KeyedListModel<LeftRunningRow>::Role{"isStopping",
                                         [](const LeftRunningRow& row) { return QVariant{row.isStopping}; }},
    KeyedListModel<LeftRunningRow>::Role{"spoken", [](const LeftRunningRow& row) { return QVariant{row.spoken}; }},
};

constexpr std::array leftoverRoles{
    KeyedListModel<LeftoverRow>::Role{"path", [](const LeftoverRow& row) { return QVariant{row.id}; }},
    KeyedListModel<LeftoverRow>::Role{"name", [](const LeftoverRow& row) { return QVariant{row.name}; }},
    KeyedListModel<LeftoverRow>::Role{"project", [](const LeftoverRow& row) { return QVariant{row.project}; }},
    KeyedListModel<LeftoverRow>::Role{"size", [](const LeftoverRow& row) { return QVariant{row.size}; }},
    KeyedListModel<LeftoverRow>::Role{"isMoving", [](const LeftoverRow& row) { return QVariant{row.isMoving}; }},
    KeyedListModel<LeftoverRow>::Role{"spoken", [](const LeftoverRow& row) { return QVariant{row.spoken}; }},
};

QString text(std::string_view utf8) { return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())); }

QString memory(std::int64_t kilobytes) { return QString::fromStdString(Formatters::memory(kilobytes)); }

/// "1 folder, 40 MB", "3 folders, 2.1 GB".
QString total(std::size_t count, const char* one, const char* more, std::int64_t kilobytes) {
    return QStringLiteral("%1 %2, %3").arg(count).arg(QLatin1StringView{count == 1 ? one : more}, memory(kilobytes));
}

/// The last component of a path.
std::string_view lastOf(std::string_view path) { return path.substr(path.find_last_of('/') + 1); }

/// What lies in the project is named from there, as in ".claude/worktrees"; a cache by its last two folders.
QString nameOf(const Leftover& leftover) {
    const std::string_view path = leftover.path;
    if (const std::size_t found = path.rfind("/" + leftover.project + "/"); found != std::string_view::npos) {
        return oneLine(path.substr(found + leftover.project.size() + 2));
    }
    const std::string_view parent = path.substr(0, path.size() - lastOf(path).size());
    return oneLine(path.substr(parent.empty() ? 0 : parent.substr(0, parent.size() - 1).find_last_of('/') + 1));
}

} // namespace

LeftBehindViewModel::LeftBehindViewModel(Scheduler& scheduler, QObject* parent)
    : QObject(parent), stopping_(scheduler), processes_(processRoles), leftovers_(leftoverRoles) {
    stopping_.onStop = [this](Pid pid) {
        if (pid == StopConfirmation::everything) {
            if (onStopAll) {
                onStopAll();
            }
        } else if (onStop) {
            onStop(pid);
        }
    };
    stopping_.onChange = [this] { formatProcesses(); };
}

void LeftBehindViewModel::show(std::span<const DetachedProcess> processes) {
    current_.assign(processes.begin(), processes.end());
    std::set<Pid> pids;
    for (const DetachedProcess& process : current_) {
        pids.insert(process.proc.pid);
    }
    stopping_.follow(pids);
    formatProcesses();
}

void LeftBehindViewModel::showLeftovers(Leftovers leftovers) {
    known_ = std::move(leftovers);
    std::erase_if(moving_, [this](const std::string& path) {
        return known_.trashError || std::ranges::find(known_.found, path, &Leftover::path) == known_.found.end();
    });
    formatLeftovers();
}

void LeftBehindViewModel::hide(int pid) const {
    const auto found =
        std::ranges::find(current_, pid, [](const DetachedProcess& process) { return process.proc.pid; });
    if (found != current_.end() && onHide) {
        onHide(found->proc.friendlyName());
    }
}

void LeftBehindViewModel::hideAll() const {
    std::set<std::string> names;
    for (const DetachedProcess& process : current_) {
        names.insert(process.proc.friendlyName());
    }
    for (const std::string& name : names) {
        if (onHide) {
            onHide(name);
        }
    }
}

void LeftBehindViewModel::openPort(int port) const {
    if (onOpenAddress) {
        onOpenAddress("http://localhost:" + std::to_string(port));
    }
}

void LeftBehindViewModel::scan() const {
    if (onScan && !known_.isScanning) {
        onScan();
    }
}

void LeftBehindViewModel::trash(const QString& path) {
    const auto found = std::ranges::find(known_.found, path.toStdString(), &Leftover::path);
    if (found == known_.found.end() || !onTrash || moving_.contains(found->path)) {
        return;
    }
    moving_.insert(found->path);
    formatLeftovers();
    // The list that it is part of may change at once.
    onTrash(Leftover{*found});
}

void LeftBehindViewModel::undoTrash() const {
    if (onUndoTrash) {
        onUndoTrash();
    }
}

QString LeftBehindViewModel::countText() const {
    return current_.empty() ? QString{} : QString::number(current_.size());
}

QString LeftBehindViewModel::stopAllLabel() const { return text(stopping_.label(StopConfirmation::everything)); }

bool LeftBehindViewModel::isAskingToStopAll() const {
    return stopping_.state(StopConfirmation::everything) == State::asking;
}

QString LeftBehindViewModel::scanLabel() const {
    if (known_.isScanning) {
        return QStringLiteral("Scanning…");
    }
    return known_.hasScanned ? QStringLiteral("Scan again") : QStringLiteral("Scan");
}

QString LeftBehindViewModel::emptyText() const {
    if (!known_.found.empty()) {
        return {};
    }
    if (known_.isScanning) {
        return QStringLiteral("Measuring folders. This may take a moment.");
    }
    return known_.hasScanned ? QStringLiteral("Nothing big found.") : QStringLiteral("Not scanned yet.");
}

QString LeftBehindViewModel::undoText() const {
    return known_.lastTrashed ? QStringLiteral("Moved %1 of %2 to the Trash.")
                                    .arg(nameOf(*known_.lastTrashed), oneLine(known_.lastTrashed->project))
                              : QString{};
}

QString LeftBehindViewModel::errorText() const { return oneLine(known_.trashError.value_or("")); }

void LeftBehindViewModel::formatProcesses() {
    std::vector<LeftRunningRow> rows;
    std::int64_t sumKB = 0;
    for (const DetachedProcess& process : current_) {
        const State state = stopping_.state(process.proc.pid);
        LeftRunningRow row;
        row.id = QString::number(process.proc.pid);
        row.pid = process.proc.pid;
        row.name = oneLine(process.proc.friendlyName());
        row.folder = oneLine(lastOf(process.cwd.value_or("")));
        row.ports = firstPorts(process.ports, mostPortsOfProcess, row.morePorts);
        row.age = QString::fromStdString(Formatters::friendlyDuration(process.proc.uptime));
        row.memory = memory(process.proc.rssKB);
        row.stopLabel = text(stopping_.label(process.proc.pid));
        row.isAsking = state == State::asking;
        row.isStopping = state == State::stopping;
        row.spoken = spokenLine({row.name, row.folder, row.age, row.memory});
        sumKB += process.proc.rssKB;
        rows.push_back(std::move(row));
    }
    processesText_ = current_.empty() ? QString{} : total(current_.size(), "process", "processes", sumKB);
    processes_.show(std::move(rows));
    emit changed();
}

void LeftBehindViewModel::formatLeftovers() {
    std::vector<LeftoverRow> rows;
    std::int64_t sumKB = 0;
    for (const Leftover& leftover : known_.found) {
        LeftoverRow row;
        row.id = QString::fromStdString(leftover.path);
        row.name = nameOf(leftover);
        row.project = oneLine(leftover.project);
        row.size = memory(leftover.sizeKB);
        row.isMoving = moving_.contains(leftover.path);
        row.spoken = spokenLine({row.name, row.project, row.size});
        sumKB += leftover.sizeKB;
        rows.push_back(std::move(row));
    }
    leftoversText_ = known_.found.empty() ? QString{} : total(known_.found.size(), "folder", "folders", sumKB);
    leftovers_.show(std::move(rows));
    emit changed();
}

} // namespace kippo
