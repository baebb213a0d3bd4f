#include "Platform/Qt/MutterIdleTime.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <chrono>

namespace kippo {

namespace {

/// An answer from before tells nothing of now.
constexpr Seconds oldest{60};
constexpr int patience = 5000; ///< milliseconds

} // namespace

MutterIdleTime::MutterIdleTime(Scheduler& scheduler, QDBusConnection bus)
    : scheduler_(scheduler), bus_(std::move(bus)) {}

std::optional<Seconds> MutterIdleTime::sinceLastInput() {
    const auto last = state_->last;
    ask();
    if (!last || scheduler_.uptime().total - last->at > oldest) {
        return std::nullopt;
    }
    return last->idle;
}

void MutterIdleTime::ask() {
    if (state_->isAsking || !bus_.isConnected()) {
        return;
    }
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.gnome.Mutter.IdleMonitor"), QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core"),
        QStringLiteral("org.gnome.Mutter.IdleMonitor"), QStringLiteral("GetIdletime"));
    question.setAutoStartService(false);
    state_->isAsking = true;
    // Of the moment of the question, so that an answer that took long does not seem new.
    const Seconds asked = scheduler_.uptime().total;
    auto* watcher = new QDBusPendingCallWatcher{bus_.asyncCall(question, patience)};
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [weak = std::weak_ptr(state_), asked](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         const auto state = weak.lock();
                         if (!state) {
                             return;
                         }
                         state->isAsking = false;
                         const QDBusPendingReply<qulonglong> reply = *finished;
                         state->last.reset();
                         if (!reply.isError()) {
                             state->last = {std::chrono::milliseconds{reply.value()}, asked};
                         }
                     });
}

} // namespace kippo
