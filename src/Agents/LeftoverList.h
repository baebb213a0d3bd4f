#pragma once

#include "Agents/AgentModels.h"
#include "Support/ProcessRunner.h"
#include "Support/SerialQueue.h"
#include "Support/Trash.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kippo {

/// The leftovers of the latest scan, and the way of one to the Trash and back. Scans and moves run on a queue of their
/// own; everything else on the main queue. Owned by the agent store.
class LeftoverList {
public:
    struct Ports {
        SerialQueue& scans;
        ProcessRunner& runner; ///< used on `scans` only, and must outlive that too; so must `trash`
        Trash& trash;
    };

    /// `changed` is called after each change. `caches` are the folders of tool caches, see LeftoverScanner.
    LeftoverList(Ports ports, std::vector<std::string> caches, std::function<void()> changed);

    /// Largest first.
    const std::vector<Leftover>& list() const { return list_; }
    bool isScanning() const { return isScanning_; }
    bool hasScanned() const { return hasScanned_; }
    const std::optional<Leftover>& lastTrashed() const { return lastTrashed_; }
    const std::optional<std::string>& error() const { return error_; }

    /// Looks in these project folders, unless a scan runs already.
    void scan(std::set<std::string> projects);
    /// Moves one of the list to the Trash; on failure it stays and `error` says why.
    void trash(const Leftover& leftover);
    /// Puts `lastTrashed` back; on failure it stays where it is and `error` says why.
    void undo();

private:
    void add(const Leftover& leftover);

    Ports ports_;
    std::vector<std::string> caches_;
    std::function<void()> changed_;
    std::vector<Leftover> list_;
    bool isScanning_ = false;
    bool hasScanned_ = false;
    std::set<std::string> moving_; ///< paths on their way to the Trash
    std::optional<Leftover> lastTrashed_;
    std::optional<Trash::Receipt> receipt_;
    std::optional<std::string> error_;
    /// Results that come back after the list is gone find this gone too.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace kippo
