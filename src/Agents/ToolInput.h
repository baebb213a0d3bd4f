#pragma once

#include "Support/Json.h"

#include <span>
#include <string_view>
#include <vector>

namespace kippo {

/// What an agent gave to a tool, reduced while it is read to the members that can name the call's subject: each agent
/// has its own names for them. `AgentActivity::detailFrom` turns it into a line. Keeps views of the text that is read,
/// so it must not outlive that text.
class ToolInput {
public:
    /// What a member holds.
    enum class Role { command, path, text };

    struct Member {
        std::string_view name;
        Role role = Role::text;
        std::vector<std::string_view> words; ///< one for a string, the strings of a list; none when absent
    };

    ToolInput();

    /// The object, or an object or array in it, begins. Replaces an earlier member of the same name. `path` starts at
    /// the input object, whose members are one step away.
    void begin(Json::Path path);
    void value(Json::Path path, Json::Kind kind, std::string_view text);

    /// The likelier a member is the subject, the earlier it comes.
    std::span<const Member> members() const { return members_; }

private:
    Member* find(std::string_view name);

    std::vector<Member> members_;
};

} // namespace kippo
