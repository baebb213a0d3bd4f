#pragma once

#include "Notch/NotchModel.h"
#include "Theme/AgentLook.h"
#include "Theme/Icon.h"

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

/// A page to choose from.
struct NotchPage {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(int tab MEMBER tab CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(kippo::Icon::Name icon MEMBER icon CONSTANT)

public:
    int tab = 0; ///< NotchViewModel::Tab
    QString name;
    Icon::Name icon = Icon::Agents;
    bool operator==(const NotchPage&) const = default;
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
    Q_PROPERTY(kippo::NotchViewModel::Wing wing READ wing NOTIFY changed)
    Q_PROPERTY(bool hasFocusBeside READ hasFocusBeside NOTIFY changed)
    Q_PROPERTY(kippo::NotchViewModel::Tab page READ page NOTIFY changed)
    Q_PROPERTY(QVariantList pages READ pages NOTIFY pagesChanged)
    Q_PROPERTY(bool isPinned READ isPinned NOTIFY changed)
    Q_PROPERTY(QVariantList lights READ lights NOTIFY lightsChanged)

public:
    // QML knows enumerators only by names that begin with a capital.
    // NOLINTBEGIN(readability-identifier-naming)
    enum class Tab { Home, Agents, Focus, Clipboard, Notes, Music, Revenue };
    Q_ENUM(Tab)
    /// What the wings show first.
    enum class Wing { AtWork, InFocus, Asleep };
    Q_ENUM(Wing)
    // NOLINTEND(readability-identifier-naming)

    explicit NotchViewModel(NotchModel& model, QObject* parent = nullptr);

    /// What a tap on the closed notch does; set by the application.
    std::function<void()> onOpen;
    Q_INVOKABLE void open() const;
    /// What the open panel's way to the settings does; set by the application.
    std::function<void()> onOpenSettings;
    Q_INVOKABLE void openSettings() const;
    /// What the open panel's page bar, its pin and Escape do; set by the application.
    std::function<void(NotchTab)> onShow;
    std::function<void(int)> onTurn;
    std::function<void(bool)> onPin;
    std::function<void()> onClose;
    Q_INVOKABLE void show(int tab) const;
    /// Turns so many pages on, or back.
    Q_INVOKABLE void turn(int steps) const;
    Q_INVOKABLE void pin(bool pinned) const;
    Q_INVOKABLE void close() const;

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
    Wing wing() const { return wing_; }
    /// The focus timer has the other wing.
    bool hasFocusBeside() const { return hasFocusBeside_; }
    Tab page() const { return static_cast<Tab>(model_.page()); }
    /// `NotchPage`s.
    const QVariantList& pages() const { return pages_; }
    bool isPinned() const { return model_.fields().isPinned; }
    /// As many `NotchLight`s as a wing has room for.
    const QVariantList& lights() const { return lights_; }

signals:
    void changed();
    void lightsChanged();
    void pagesChanged();

private:
    void read();
    void readWings(const NotchModel::Fields& fields);
    void readPages(const std::vector<NotchTab>& tabs);

    NotchModel& model_;
    AgentSession peek_;
    AgentsActivity live_;
    QVariantList lights_;
    Wing wing_ = Wing::AtWork;
    bool hasFocusBeside_ = false;
    std::vector<NotchTab> tabs_; ///< of `pages_`
    QVariantList pages_;
    Subscription subscription_;
};

} // namespace kippo
