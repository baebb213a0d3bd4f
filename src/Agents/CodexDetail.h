#pragma once

#include "Support/JsonSkim.h"

#include <optional>
#include <string>

/// What a Codex tool call is about, in one line, from its input in each of the shapes in which Codex writes one.
namespace kippo::CodexDetail {

/// A string that holds the JSON text of the arguments' object.
std::optional<std::string> ofArguments(const JsonText& arguments);
/// A command: a list of words or a string.
std::optional<std::string> ofCommand(const JsonText& command);
/// An object with a list of words under "command".
std::optional<std::string> ofAction(const JsonText& action);
/// An object with a "query".
std::optional<std::string> ofQuery(const JsonText& action);
/// Free text.
std::optional<std::string> ofText(const JsonText& text);
/// A patch: the first file that it changes, or else adds.
std::optional<std::string> ofPatch(const JsonText& patch);
/// An object whose keys are the changed files: the first.
std::optional<std::string> ofChanges(const JsonText& changes);

/// `text` repaired and in one line.
std::optional<std::string> shown(const std::optional<std::string>& text);

} // namespace kippo::CodexDetail
