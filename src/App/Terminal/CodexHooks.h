#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Which hooks Codex was told to trust. It writes the user's decision into its config.toml, one table for each entry:
/// [hooks.state."<path of hooks.json>:<event>:<index of the group>:<index in the group>"] with "trusted_hash" and
/// perhaps "enabled". As seen in Codex 0.169.
namespace kippo::Terminal::CodexHooks {

/// An entry of Kippo in hooks.json.
struct Entry {
    std::string place; ///< what follows the file's path in the key, ":stop:0:0"
    /// The text whose SHA-256 is the hash that Codex keeps; empty for an entry that Kippo would write otherwise, of
    /// which the hash cannot be foretold.
    std::string identity;

    bool operator==(const Entry&) const = default;
};

/// Kippo's entries in the text of hooks.json; none when it is not JSON.
std::vector<Entry> entries(std::string_view hooks);

/// What config.toml says of one entry.
struct Record {
    std::optional<std::string> trustedHash; ///< without "sha256:"
    bool isDisabled = false;
};

/// The record under `key`, read from the text of config.toml.
Record record(std::string_view config, std::string_view key);

/// Whether config.toml switches all hooks off.
bool areHooksOff(std::string_view config);

} // namespace kippo::Terminal::CodexHooks
