#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// The few messages of D-Bus that the terminal commands need, as bytes: calls with strings and whole numbers, and
/// replies with a string. In the byte order of this machine, which is that of all programs on it.
namespace kippo::DBusMessage {

struct Call {
    std::string destination;
    std::string path;
    std::string interface;
    std::string member;
    std::vector<std::variant<std::string, std::int32_t>> arguments{};
};

/// The call's bytes. Nobody is started for it. `serial` is any number but 0.
std::string encode(const Call& call, std::uint32_t serial);

struct Reply {
    std::uint32_t serial = 0; ///< of the call that it answers; 0 for a message that answers none
    std::string error{};      ///< the name of the error; empty for an answer
    std::string text{};       ///< the first argument, where that is a string
};

/// How many bytes begin every message and tell its size.
inline constexpr std::size_t headSize = 16;
/// What no message of ours comes near to.
inline constexpr std::size_t sizeLimit = 1U << 20;

/// The size of the whole message that begins with these `headSize` bytes; nothing when it is none, of another byte
/// order, or above `sizeLimit`.
std::optional<std::size_t> size(std::string_view head);

/// The whole message; nothing when it is none.
std::optional<Reply> decode(std::string_view message);

} // namespace kippo::DBusMessage
