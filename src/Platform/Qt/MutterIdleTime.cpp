#include "Platform/Qt/MutterIdleTime.h"

#include <QDBusMessage>
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
    takeAnswer();
    ask();
    if (!last_ || scheduler_.uptime().total - last_->at > oldest) {
        return std::nullopt;
    }
    return last_->idle;
}

void MutterIdleTime::takeAnswer() {
    if (!question_ || !question_->call.isFinished()) {
        return;
    }
    const QDBusPendingReply<qulonglong> reply = question_->call;
    last_.reset();
    if (!reply.isError()) {
        last_ = {std::chrono::milliseconds{reply.value()}, question_->at};
    }
    question_.reset();
}

void MutterIdleTime::ask() {
    if (question_ || !bus_.isConnected()) {
        return;
    }
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.gnome.Mutter.IdleMonitor"), QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core"),
        QStringLiteral("org.gnome.Mutter.IdleMonitor"), QStringLiteral("GetIdletime"));
    question.setAutoStartService(false);
    question_ = {bus_.asyncCall(question, patience), scheduler_.uptime().total};
}

} // namespace kippo
