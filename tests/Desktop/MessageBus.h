#pragma once

#include "Fakes/PrivateHome.h"
#include "Views/XDesktop.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <future>

namespace kippo {

/// A message bus of its own, and Qt's main queue.
class MessageBus {
public:
    /// Another program's connection; `name` is the test's word for it.
    QDBusConnection connect(const char* name) const {
        return QDBusConnection::connectToBus(QString::fromStdString(address()), QString::fromLatin1(name));
    }
    std::string address() const { return "unix:path=" + home.path("bus"); }
    bool isThere() const {
        return eventually([this] { return home.exists("bus"); });
    }

    /// Runs the main queue until `holds`, for at most some seconds.
    static bool processed(const std::function<bool()>& holds) {
        return eventually([&] {
            QCoreApplication::processEvents();
            return holds();
        });
    }
    /// What `work` gives on a thread of its own, while the main queue runs.
    template <typename Work> static auto aside(Work work) {
        auto result = std::async(std::launch::async, work);
        processed([&] { return result.wait_for(std::chrono::seconds{0}) == std::future_status::ready; });
        return result.get();
    }

    PrivateHome home;

private:
    int argc_ = 1;
    char program_[5] = "test";
    char* argv_[2] = {program_, nullptr};
    QCoreApplication application_{argc_, argv_};
    Child server_{{"dbus-daemon", "--session", "--nofork", "--address=" + address()}, {}};
};

} // namespace kippo
