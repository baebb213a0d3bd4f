#pragma once

#include "Platform/Linux/DBusMessage.h"
#include "Platform/Posix/Descriptor.h"

#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kippo {

/// A connection to the person's message bus for programs without Qt: a call at a time, each waited for. Own code
/// because the archive of libdbus wants one of libsystemd, which Debian has not, and loads libraries while it runs.
class SessionBus {
public:
    enum class Failure {
        noBus,    ///< there is none, or it does not let us in
        nobody,   ///< nobody has the name that was called
        noAnswer, ///< within `patience`
        error     ///< an error of the one who was called
    };
    struct Error {
        Failure failure = Failure::noBus;
        std::string name{};    ///< of `error`
        std::string message{}; ///< of `error`, for the person
    };

    static constexpr int patience = 5000; ///< milliseconds, for a connection or an answer

    /// Connects to the first of `addresses` that answers; see `addresses`.
    static std::expected<SessionBus, Error> connect(const std::vector<std::string>& addresses);

    /// The answer's first argument, where that is a string.
    std::expected<std::string, Error> call(const DBusMessage::Call& call);

    /// The sockets of the bus: as DBUS_SESSION_BUS_ADDRESS lists them, else the one in XDG_RUNTIME_DIR. One that begins
    /// with a NUL is abstract. Addresses of other kinds are left out.
    static std::vector<std::string> addresses();

private:
    explicit SessionBus(Descriptor socket) : socket_(std::move(socket)) {}

    bool logIn();
    bool send(std::string_view bytes) const;
    /// Waits for bytes; false when none came.
    bool receive();
    std::optional<std::string> message();

    Descriptor socket_;
    std::string received_;
    std::uint32_t serial_ = 0;
};

} // namespace kippo
