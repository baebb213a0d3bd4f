#include "Platform/Linux/ListeningSockets.h"

#include "Platform/Linux/ProcFile.h"
#include "Platform/Posix/Descriptor.h"
#include "Support/Text.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <span>
#include <sys/socket.h>
#include <sys/time.h>

namespace kippo::ListeningSockets {

namespace {

/// TCP_LISTEN of the kernel's tcp_states.h, also "0A" in its tables.
constexpr unsigned listenState = 10;

bool askForListeners(int socket, int family) {
    struct {
        nlmsghdr header;
        inet_diag_req_v2 request;
    } message{};
    message.header.nlmsg_len = sizeof message;
    message.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
    message.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    message.request.sdiag_family = static_cast<std::uint8_t>(family);
    message.request.sdiag_protocol = IPPROTO_TCP;
    message.request.idiag_states = 1U << listenState;
    return send(socket, &message, sizeof message, 0) == static_cast<ssize_t>(sizeof message);
}

enum class Answer : std::uint8_t { more, done, refused };

/// Takes the messages of one datagram into `ports`.
Answer take(std::span<const std::byte> bytes, Ports& ports) {
    while (bytes.size() >= sizeof(nlmsghdr)) {
        nlmsghdr header;
        std::memcpy(&header, bytes.data(), sizeof header);
        if (header.nlmsg_len < sizeof header || header.nlmsg_len > bytes.size()) {
            return Answer::refused;
        }
        if (header.nlmsg_type == NLMSG_DONE) {
            return Answer::done;
        }
        if (header.nlmsg_type == SOCK_DIAG_BY_FAMILY && header.nlmsg_len >= NLMSG_LENGTH(sizeof(inet_diag_msg))) {
            inet_diag_msg socket;
            std::memcpy(&socket, bytes.data() + NLMSG_HDRLEN, sizeof socket);
            ports.emplace(socket.idiag_inode, ntohs(socket.id.idiag_sport));
        } else if (header.nlmsg_type == NLMSG_ERROR) {
            return Answer::refused;
        }
        bytes = bytes.subspan(std::min<std::size_t>(NLMSG_ALIGN(header.nlmsg_len), bytes.size()));
    }
    return Answer::more;
}

template <typename Number> std::optional<Number> number(std::string_view text, int base) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional{value} : std::nullopt;
}

} // namespace

std::optional<Ports> fromNetlink(int family) {
    const Descriptor socket{::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_SOCK_DIAG)};
    // The kernel answers at once; the time-out keeps an unusual kernel from holding the caller for ever.
    const timeval patience{.tv_sec = 1, .tv_usec = 0};
    if (!socket || setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience) != 0 ||
        !askForListeners(socket.get(), family)) {
        return std::nullopt;
    }
    Ports ports;
    std::array<std::byte, 32768> buffer;
    for (;;) {
        const ssize_t got = recv(socket.get(), buffer.data(), buffer.size(), 0);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return std::nullopt;
        }
        switch (take(std::span{buffer}.first(static_cast<std::size_t>(got)), ports)) {
        case Answer::done:
            return ports;
        case Answer::refused:
            return std::nullopt;
        case Answer::more:
            break;
        }
    }
}

Ports parseTable(std::string_view text) {
    Ports ports;
    for (const std::string_view line : Text::split(text, '\n')) {
        // sl, local address:port, remote, state, queues, timer, retransmits, uid, timeout, inode
        const auto fields = Text::split(line, ' ');
        if (fields.size() < 10 || fields[3] != "0A") {
            continue;
        }
        const auto colon = fields[1].rfind(':');
        const auto port = number<int>(fields[1].substr(colon + 1), 16);
        const auto inode = number<std::uint64_t>(fields[9], 10);
        if (colon != std::string_view::npos && port && inode && *port > 0 && *port <= 65535) {
            ports.emplace(*inode, *port);
        }
    }
    return ports;
}

std::optional<Ports> fromTable(const char* path) {
    constexpr std::size_t limit = 16U << 20;
    const auto text = ProcFile::read(AT_FDCWD, path, limit);
    return text ? std::optional{parseTable(*text)} : std::nullopt;
}

Ports read() {
    Ports all;
    constexpr std::array families{std::pair{AF_INET, "/proc/net/tcp"}, std::pair{AF_INET6, "/proc/net/tcp6"}};
    for (const auto& [family, table] : families) {
        auto ports = fromNetlink(family);
        if (!ports) {
            ports = fromTable(table);
        }
        if (ports) {
            all.merge(*ports);
        }
    }
    return all;
}

} // namespace kippo::ListeningSockets
