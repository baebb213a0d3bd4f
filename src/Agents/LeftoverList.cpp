#include "Agents/LeftoverList.h"

#include "Agents/LeftoverScanner.h"

#include <algorithm>
#include <expected>
#include <utility>

namespace kippo {

LeftoverList::LeftoverList(Ports ports, std::vector<std::string> caches, std::function<void()> changed)
    : ports_(ports), caches_(std::move(caches)), changed_(std::move(changed)) {}

void LeftoverList::scan(std::set<std::string> projects) {
    if (isScanning_) {
        return;
    }
    isScanning_ = true;
    changed_();
    const auto found = std::make_shared<std::vector<Leftover>>();
    ports_.scans.run([&runner = ports_.runner, found, projects = std::move(projects),
                      caches = caches_] { *found = LeftoverScanner::scan(projects, caches, runner); },
                     [this, found, alive = std::weak_ptr(alive_)] {
                         if (alive.expired()) {
                             return;
                         }
                         isScanning_ = false;
                         hasScanned_ = true;
                         error_.reset();
                         list_ = std::move(*found);
                         changed_();
                     });
}

void LeftoverList::trash(const Leftover& leftover) {
    // A second click on the same row asks for nothing new.
    if (std::ranges::find(list_, leftover) == list_.end() || !moving_.insert(leftover.path).second) {
        return;
    }
    using Result = std::expected<Trash::Receipt, Trash::Error>;
    const auto result = std::make_shared<Result>();
    ports_.scans.run([&trash = ports_.trash, result, path = leftover.path] { *result = trash.moveToTrash(path); },
                     [this, result, leftover, alive = std::weak_ptr(alive_)] {
                         if (alive.expired()) {
                             return;
                         }
                         moving_.erase(leftover.path);
                         error_.reset();
                         if (*result) {
                             std::erase_if(list_, [&](const Leftover& item) { return item.path == leftover.path; });
                             lastTrashed_ = leftover;
                             receipt_ = std::move(**result);
                         } else {
                             error_ = std::move(result->error().sentence);
                         }
                         changed_();
                     });
}

void LeftoverList::undo() {
    if (!receipt_) {
        return;
    }
    const Leftover leftover = *lastTrashed_;
    const Trash::Receipt receipt = *receipt_;
    // What has begun cannot be asked for twice; a failure brings the offer back.
    lastTrashed_.reset();
    receipt_.reset();
    const auto result = std::make_shared<std::expected<void, Trash::Error>>();
    ports_.scans.run([&trash = ports_.trash, result, receipt] { *result = trash.putBack(receipt); },
                     [this, result, leftover, receipt, alive = std::weak_ptr(alive_)] {
                         if (alive.expired()) {
                             return;
                         }
                         error_.reset();
                         if (*result) {
                             add(leftover);
                         } else {
                             error_ = std::move(result->error().sentence);
                             if (!receipt_) {
                                 lastTrashed_ = leftover;
                                 receipt_ = receipt;
                             }
                         }
                         changed_();
                     });
    changed_();
}

void LeftoverList::add(const Leftover& leftover) {
    std::erase_if(list_, [&](const Leftover& item) { return item.path == leftover.path; });
    const auto place = std::ranges::lower_bound(list_, leftover.sizeKB, std::greater{}, &Leftover::sizeKB);
    list_.insert(place, leftover);
}

} // namespace kippo
