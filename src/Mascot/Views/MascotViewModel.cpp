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
        said_ = message_.value_or(said_);
        emit messageChanged();
    }
}

QString MascotViewModel::text() const { return QString::fromStdString(said_.text); }

QString MascotViewModel::primary() const { return title(said_.primary); }

QString MascotViewModel::secondary() const { return title(said_.secondary); }

MascotItem::Mood MascotViewModel::mood() const { return static_cast<MascotItem::Mood>(said_.mood); }

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
