#include "Platform/Linux/SessionBus.h"

#include "Support/Text.h"

#include <array>
#include <cctype>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace kippo {

namespace {

using Error = SessionBus::Error;
using Failure = SessionBus::Failure;

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string{} : value;
}

int hexDigit(char digit) {
    constexpr std::string_view digits = "0123456789abcdef";
    return static_cast<int>(digits.find(static_cast<char>(digit | 0x20)));
}

/// The value of a part of an address, in which odd bytes stand as "%" and two digits.
std::string unescaped(std::string_view value) {
    std::string text;
    for (std::size_t at = 0; at < value.size(); ++at) {
        if (value[at] == '%' && at + 2 < value.size() &&
            std::isxdigit(static_cast<unsigned char>(value[at + 1])) != 0 &&
            std::isxdigit(static_cast<unsigned char>(value[at + 2])) != 0) {
            text += static_cast<char>(hexDigit(value[at + 1]) << 4 | hexDigit(value[at + 2]));
            at += 2;
        } else {
            text += value[at];
        }
    }
    return text;
}

/// The socket of one address such as "unix:path=/run/user/1000/bus,guid=0123"; empty for any other kind.
std::string socketOf(std::string_view address) {
    constexpr std::string_view kind = "unix:";
    if (!address.starts_with(kind)) {
        return {};
    }
    for (const std::string_view part : Text::split(address.substr(kind.size()), ',')) {
        const auto equals = part.find('=');
        const std::string_view key = part.substr(0, equals);
        std::string value = equals == std::string_view::npos ? "" : unescaped(part.substr(equals + 1));
        if (key == "path") {
            return value;
        }
        if (key == "abstract") {
            return '\0' + value;
        }
        if (key == "runtime" && value == "yes") {
            return environment("XDG_RUNTIME_DIR") + "/bus";
        }
    }
    return {};
}

Descriptor connectTo(const std::string& address) {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    if (address.size() >= sizeof name.sun_path) {
        return {};
    }
    std::memcpy(name.sun_path, address.data(), address.size());
    const bool isAbstract = address.starts_with('\0');
    const auto size = offsetof(sockaddr_un, sun_path) + address.size() + (isAbstract ? 0 : 1);
    Descriptor connected{socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    if (!connected ||
        connect(connected.get(), reinterpret_cast<const sockaddr*>(&name), static_cast<socklen_t>(size)) != 0) {
        return {};
    }
    return connected;
}

/// Our user's number in digits, each as the two hexadecimal digits of its character.
std::string identity() {
    std::string text;
    for (const char digit : std::to_string(geteuid())) {
        text += '3';
        text += digit;
    }
    return text;
}

bool isAbsence(std::string_view error) {
    return error == "org.freedesktop.DBus.Error.ServiceUnknown" || error == "org.freedesktop.DBus.Error.NameHasNoOwner";
}

} // namespace

std::vector<std::string> SessionBus::addresses() {
    std::string text = environment("DBUS_SESSION_BUS_ADDRESS");
    if (text.empty()) {
        const std::string folder = environment("XDG_RUNTIME_DIR");
        return folder.empty() ? std::vector<std::string>{} : std::vector{folder + "/bus"};
    }
    std::vector<std::string> found;
    for (const std::string_view address : Text::split(text, ';')) {
        if (auto socket = socketOf(address); !socket.empty()) {
            found.push_back(std::move(socket));
        }
    }
    return found;
}

std::expected<SessionBus, Error> SessionBus::connect(const std::vector<std::string>& addresses) {
    for (const auto& address : addresses) {
        if (Descriptor socket = connectTo(address)) {
            SessionBus bus{std::move(socket)};
            if (bus.logIn()) {
                return bus;
            }
        }
    }
    return std::unexpected{Error{.failure = Failure::noBus}};
}

bool SessionBus::logIn() {
    using namespace std::string_view_literals;
    if (!send("\0AUTH EXTERNAL "sv) || !send(identity() + "\r\n")) {
        return false;
    }
    while (received_.find('\n') == std::string::npos) {
        if (!receive()) {
            return false;
        }
    }
    if (!received_.starts_with("OK ") || !send("BEGIN\r\n")) {
        return false;
    }
    received_.erase(0, received_.find('\n') + 1);
    return call({.destination = "org.freedesktop.DBus",
                 .path = "/org/freedesktop/DBus",
                 .interface = "org.freedesktop.DBus",
                 .member = "Hello"})
        .has_value();
}

std::expected<std::string, Error> SessionBus::call(const DBusMessage::Call& call) {
    const std::uint32_t serial = ++serial_;
    if (!send(DBusMessage::encode(call, serial))) {
        return std::unexpected{Error{.failure = Failure::noBus}};
    }
    while (const auto bytes = message()) {
        auto reply = DBusMessage::decode(*bytes);
        if (!reply) {
            break;
        }
        if (reply->serial != serial) {
            continue;
        }
        if (reply->error.empty()) {
            return std::move(reply->text);
        }
        return std::unexpected{Error{.failure = isAbsence(reply->error) ? Failure::nobody : Failure::error,
                                     .name = std::move(reply->error),
                                     .message = std::move(reply->text)}};
    }
    return std::unexpected{Error{.failure = Failure::noAnswer}};
}

bool SessionBus::send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent > 0 ? sent : 0));
    }
    return true;
}

bool SessionBus::receive() {
    pollfd waiting{socket_.get(), POLLIN, 0};
    if (poll(&waiting, 1, patience) != 1) {
        return false;
    }
    std::array<char, 4096> block{};
    const ssize_t count = read(socket_.get(), block.data(), block.size());
    if (count <= 0 || received_.size() > DBusMessage::sizeLimit * 2) {
        return false;
    }
    received_.append(block.data(), static_cast<std::size_t>(count));
    return true;
}

std::optional<std::string> SessionBus::message() {
    while (true) {
        std::size_t wanted = DBusMessage::headSize;
        if (received_.size() >= wanted) {
            const auto size = DBusMessage::size(received_);
            if (!size) {
                return std::nullopt;
            }
            wanted = *size;
            if (received_.size() >= wanted) {
                std::string whole = received_.substr(0, wanted);
                received_.erase(0, wanted);
                return whole;
            }
        }
        if (!receive()) {
            return std::nullopt;
        }
    }
}

} // namespace kippo
