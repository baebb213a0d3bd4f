#pragma once

#include "Mascot/MascotStage.h"
#include "Mascot/Views/MascotItem.h"

#include <QObject>
#include <QQmlEngine>

namespace kippo {

/// Where the mascot is and what he does, for QML: on the open panel's floor, and in the closed notch's wing. While he
/// walks his place moves on thirty times a second; otherwise nothing happens here.
class MascotStageViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool isRoaming READ isRoaming NOTIFY changed)
    Q_PROPERTY(kippo::MascotItem::State state READ state NOTIFY changed)
    Q_PROPERTY(bool facesLeft READ facesLeft NOTIFY changed)
    Q_PROPERTY(double place READ place NOTIFY placeChanged)
    Q_PROPERTY(bool isInWing READ isInWing NOTIFY changed)
    Q_PROPERTY(kippo::MascotItem::State wingState READ wingState NOTIFY changed)

public:
    MascotStageViewModel(MascotStage& stage, Scheduler& scheduler, QObject* parent = nullptr);

    /// Whether there is a mascot on the floor at all.
    bool isRoaming() const { return stage_.isRoaming(); }
    MascotItem::State state() const { return static_cast<MascotItem::State>(stage_.floor().state); }
    bool facesLeft() const { return stage_.floor().facesLeft; }
    /// Along the floor, 0 to 1.
    double place() const { return stage_.floor().position(scheduler_.now(), stage_.floorLength()); }
    bool isInWing() const { return stage_.wing().has_value(); }
    MascotItem::State wingState() const;

    /// Seconds since the state on the floor began, and the one in the wing.
    Q_INVOKABLE double age() const { return (scheduler_.now() - stage_.floor().since).count(); }
    Q_INVOKABLE double wingAge() const;
    /// He is drawn anew; where he walks, he is elsewhere by now.
    Q_INVOKABLE void step() { emit placeChanged(); }
    /// How long the floor is, in his own heights.
    Q_INVOKABLE void setFloorLength(double length) { stage_.setFloorLength(length); }

signals:
    void changed();
    void placeChanged();
    /// A state began, on the floor or in the wing, perhaps the same once more.
    void begun();
    void wingBegun();

private:
    void follow();

    MascotStage& stage_;
    Scheduler& scheduler_;
    MascotStage::Floor floor_;
    std::optional<MascotStage::Actor> wing_;
    Subscription subscription_;
};

} // namespace kippo
