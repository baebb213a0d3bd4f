#pragma once

#include "Agents/AgentModels.h"
#include "Support/JsonSkim.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kippo {

/// The tool calls of one transcript, in the order in which they began, and which of them have returned. Several may run
/// at once, and each result answers its own call only. Refers to the transcript's text, and works out what a call is
/// about only for the one that is shown.
class ToolCalls {
public:
    struct Call {
        JsonText id{};    ///< empty when the transcript gives none
        JsonText group{}; ///< the reply that made the call; empty when unknown
        JsonText name{};
        /// What `detail` reads: the call's input, as its agent writes it.
        JsonText input{};
        std::optional<std::string> (*detail)(const JsonText& input) = nullptr;
        std::optional<AgentActivity::Kind> kind{}; ///< when the name does not tell
        Date time{};
        bool thinking = false; ///< no call at all, and no result will answer it
        bool finished = false;
    };

    /// For `Call::detail` where the input is the object of a tool's arguments, as it stands in the line.
    static std::optional<std::string> detailOfObject(const JsonText& input);

    void begin(const Call& call) { calls_.push_back(call); }
    /// Whether a call with this id was begun; false for an empty id.
    bool knows(const JsonText& id) const;
    /// A result came: it finishes the call with its id, or every running one when it or they have no id.
    void finish(const JsonText& id);
    /// The turn is over, however it ended: nothing runs any more.
    void finishAll();

    /// The call that began last, if any.
    const Call* last() const { return calls_.empty() ? nullptr : &calls_.back(); }
    /// The name, in small letters, of the latest running call among those that wait for the user; empty when there is
    /// none.
    std::string pendingQuestion() const;
    /// What to show: the call that began last, or one made together with it that still runs.
    std::optional<AgentActivity> activity() const;

private:
    std::vector<Call> calls_;
};

} // namespace kippo
