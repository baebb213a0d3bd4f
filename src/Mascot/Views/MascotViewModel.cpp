#include "Mascot/Views/MascotViewModel.h"

#include <utility>

namespace kippo {

namespace {

QString title(const std::optional<MascotMessage::Choice>& choice) {
    return choice ? QString::fromStdString(choice->title) : QString{};
}

} // namespace

void MascotViewModel::show(std::optional<MascotMessage> message) {
    if (message != message_) {
        message_ = std::move(message);
        emit messageChanged();
    }
}

QString MascotViewModel::text() const { return message_ ? QString::fromStdString(message_->text) : QString{}; }

QString MascotViewModel::primary() const { return message_ ? title(message_->primary) : QString{}; }

QString MascotViewModel::secondary() const { return message_ ? title(message_->secondary) : QString{}; }

MascotItem::Mood MascotViewModel::mood() const {
    return message_ ? static_cast<MascotItem::Mood>(message_->mood) : MascotItem::Mood::Curious;
}

void MascotViewModel::answerPrimary() {
    if (message_) {
        answer(message_->primary);
    }
}

void MascotViewModel::answerSecondary() {
    if (message_) {
        answer(message_->secondary);
    }
}

void MascotViewModel::dismiss() {
    if (message_) {
        answer(MascotMessage::Choice{});
    }
}

void MascotViewModel::setAttended(bool attended) {
    if (onAttended) {
        onAttended(attended);
    }
}

void MascotViewModel::answer(const std::optional<MascotMessage::Choice>& choice) {
    if (choice && onAction) {
        // What hears the answer may take the message away.
        const MascotMessage::Action action = choice->action;
        onAction(action);
    }
}

} // namespace kippo
