#pragma once

#include "Support/Trash.h"

#include <optional>
#include <set>
#include <vector>

namespace kippo {

/// A Trash in memory. `places` are the paths that exist; `contents` what lies in the Trash, which the test may empty.
class FakeTrash final : public Trash {
public:
    std::set<std::string> places;
    std::vector<Receipt> contents;
    std::optional<std::string> refusal; ///< when set, nothing moves, with this sentence

    std::expected<Receipt, Error> moveToTrash(const std::string& path) override {
        if (refusal || places.erase(path) == 0) {
            return std::unexpected{Error{refusal.value_or("“" + path + "” is not there.")}};
        }
        contents.push_back({.original = path, .trashed = "/trash/files/" + std::to_string(++moved_)});
        return contents.back();
    }
    std::expected<void, Error> putBack(const Receipt& receipt) override {
        if (refusal || places.contains(receipt.original) || std::erase(contents, receipt) == 0) {
            return std::unexpected{Error{refusal.value_or("“" + receipt.original + "” could not be put back.")}};
        }
        places.insert(receipt.original);
        return {};
    }

private:
    int moved_ = 0;
};

} // namespace kippo
