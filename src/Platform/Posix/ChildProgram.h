#pragma once

#include <chrono>
#include <optional>
#include <span>
#include <string>

namespace kippo::ChildProgram {

/// Runs a program and gives what it wrote to its standard output (at most `outputLimit` bytes); its standard input is
/// empty and its standard error is discarded. Numbers come in the C locale's form. Nothing when it cannot be started or
/// has not ended after `patience`, in which case it is killed; the exit status does not matter. Blocking.
std::optional<std::string> output(const std::string& path, std::span<const std::string> arguments,
                                  std::chrono::milliseconds patience);

inline constexpr std::size_t outputLimit = 16U << 20;

} // namespace kippo::ChildProgram
