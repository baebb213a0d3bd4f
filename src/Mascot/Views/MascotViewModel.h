#pragma once

#include "Mascot/MascotMessage.h"
#include "Mascot/Views/MascotItem.h"

#include <QObject>
#include <QQmlEngine>
#include <functional>
#include <optional>

namespace kippo {

/// What the mascot says, for his bubble. It decides nothing: answers and the pointer are passed on. What he said stays
/// readable when it is over, so that it can fade out.
class MascotViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool speaks READ speaks NOTIFY messageChanged)
    Q_PROPERTY(QString text READ text NOTIFY messageChanged)
    Q_PROPERTY(QString primary READ primary NOTIFY messageChanged)
    Q_PROPERTY(QString secondary READ secondary NOTIFY messageChanged)
    Q_PROPERTY(kippo::MascotItem::Mood mood READ mood NOTIFY messageChanged)
    Q_PROPERTY(bool wakes READ wakes NOTIFY messageChanged)

public:
    using QObject::QObject;

    /// Has him say `message`, or nothing.
    void show(std::optional<MascotMessage> message);

    bool speaks() const { return message_.has_value(); }
    QString text() const;
    /// The title of an answer; empty for none.
    QString primary() const;
    QString secondary() const;
    MascotItem::Mood mood() const;
    /// Whether he has to wake before he speaks.
    bool wakes() const { return message_ && message_->wakeUp; }

    Q_INVOKABLE void answerPrimary();
    Q_INVOKABLE void answerSecondary();
    /// He is waved away, without an answer.
    Q_INVOKABLE void dismiss();
    /// The pointer is on the bubble, or the keyboard in it.
    Q_INVOKABLE void setAttended(bool attended);

    std::function<void(const MascotMessage::Action&)> onAction;
    std::function<void(bool)> onAttended;

signals:
    void messageChanged();

private:
    void answer(const std::optional<MascotMessage::Choice>& choice);

    std::optional<MascotMessage> message_;
    MascotMessage said_; ///< what he says, or said last
};

} // namespace kippo
