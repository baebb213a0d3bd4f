#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace kippo::ListeningSockets {

/// The TCP port of each listening socket of this network namespace, IPv4 and IPv6, by the socket's inode.
using Ports = std::unordered_map<std::uint64_t, int>;

/// Asks the kernel's socket diagnostics, and where those are refused reads /proc/net/tcp and /proc/net/tcp6, which
/// costs fifty times as much. Empty when neither answers.
Ports read();

/// The two ways of `read`, of one address family (AF_INET or AF_INET6) or file. Nothing when the way is barred.
std::optional<Ports> fromNetlink(int family);
std::optional<Ports> fromTable(const char* path);

/// The listening sockets in the text of /proc/net/tcp or /proc/net/tcp6.
Ports parseTable(std::string_view text);

} // namespace kippo::ListeningSockets
