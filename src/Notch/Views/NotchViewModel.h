#pragma once

#include "Notch/NotchModel.h"
#include "Theme/AgentLook.h"

#include <QColor>
#include <QObject>
#include <QVariantList>
#include <functional>

namespace kippo {

/// One light of a wing: a session's status in its agent's colour.
struct NotchLight {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(kippo::AgentLook::Status status MEMBER status CONSTANT)
    Q_PROPERTY(QColor color MEMBER color CONSTANT)

public:
    AgentLook::Status status = AgentLook::Status::Idle;
    QColor color; ///< of the agent
    bool operator==(const NotchLight&) const = default;
};

/// The notch's state for QML. What a mode shows stays readable after the mode is left, so that it can fade out.
class NotchViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool isExpanded READ isExpanded NOTIFY changed)
    Q_PROPERTY(bool hasNotch READ hasNotch NOTIFY changed)
    Q_PROPERTY(double notchWidth READ notchWidth NOTIFY changed)
    Q_PROPERTY(double notchHeight READ notchHeight NOTIFY changed)
    Q_PROPERTY(kippo::AgentLook::Kind peekKind READ peekKind NOTIFY changed)
    Q_PROPERTY(kippo::AgentLook::Status peekStatus READ peekStatus NOTIFY changed)
    Q_PROPERTY(QString peekTitle READ peekTitle NOTIFY changed)
    Q_PROPERTY(QString peekWord READ peekWord NOTIFY changed)
    Q_PROPERTY(QString peekProject READ peekProject NOTIFY changed)
    Q_PROPERTY(QString peekSentence READ peekSentence NOTIFY changed)
    Q_PROPERTY(QString peekSpoken READ peekSpoken NOTIFY changed)
    Q_PROPERTY(QString liveSpoken READ liveSpoken NOTIFY changed)
    Q_PROPERTY(int liveWorking READ liveWorking NOTIFY changed)
    Q_PROPERTY(int liveNeedsYou READ liveNeedsYou NOTIFY changed)
    Q_PROPERTY(bool liveIsOneKind READ liveIsOneKind NOTIFY changed)
    Q_PROPERTY(kippo::AgentLook::Kind liveKind READ liveKind NOTIFY changed)
    Q_PROPERTY(bool isAsleep READ isAsleep NOTIFY changed)
    Q_PROPERTY(QVariantList lights READ lights NOTIFY lightsChanged)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed)

public:
    explicit NotchViewModel(NotchModel& model, QObject* parent = nullptr);

    /// What a tap on the closed notch does; set by the application.
    std::function<void()> onOpen;
    Q_INVOKABLE void open() const;
    /// What the open panel's way to the settings does; set by the application.
    std::function<void()> onOpenSettings;
    Q_INVOKABLE void openSettings() const;

    bool isExpanded() const { return model_.fields().mode == NotchModel::Mode::expanded; }
    bool hasNotch() const { return model_.fields().hasNotch; }
    double notchWidth() const { return model_.fields().notchSize.width; }
    double notchHeight() const { return model_.fields().notchSize.height; }

    AgentLook::Kind peekKind() const { return AgentLook::look(peek_.kind); }
    AgentLook::Status peekStatus() const { return AgentLook::look(peek_.status.value); }
    QString peekTitle() const;
    /// "Done" or "Needs you".
    QString peekWord() const;
    QString peekProject() const;
    QString peekSentence() const;
    /// The whole announcement, and the whole of the wings, for a screen reader.
    QString peekSpoken() const;
    QString liveSpoken() const;

    int liveWorking() const { return live_.working; }
    int liveNeedsYou() const { return live_.needsYou; }
    /// All that work or wait are of one kind, `liveKind`.
    bool liveIsOneKind() const { return live_.kind.has_value(); }
    AgentLook::Kind liveKind() const { return AgentLook::look(live_.kind.value_or(AgentKind::custom)); }
    /// Nothing goes on and it is night.
    bool isAsleep() const { return isAsleep_; }
    /// As many `NotchLight`s as a wing has room for.
    const QVariantList& lights() const { return lights_; }

    bool reducedMotion() const { return reducedMotion_; }
    void setReducedMotion(bool reduced);

signals:
    void changed();
    void lightsChanged();

private:
    void read();

    NotchModel& model_;
    AgentSession peek_;
    AgentsActivity live_;
    QVariantList lights_;
    bool isAsleep_ = false;
    bool reducedMotion_ = false;
    Subscription subscription_;
};

} // namespace kippo
