#include "Mascot/Views/MascotStageViewModel.h"

namespace kippo {

MascotStageViewModel::MascotStageViewModel(MascotStage& stage, Scheduler& scheduler, QObject* parent)
    : QObject(parent), stage_(stage), scheduler_(scheduler), floor_(stage.floor()), wing_(stage.wing()),
      subscription_(stage.observe([this] { follow(); })) {}

MascotItem::State MascotStageViewModel::wingState() const {
    return stage_.wing() ? static_cast<MascotItem::State>(stage_.wing()->state) : MascotItem::State::Sleep;
}

double MascotStageViewModel::wingAge() const {
    return stage_.wing() ? (scheduler_.now() - stage_.wing()->since).count() : 0;
}

void MascotStageViewModel::follow() {
    const bool begins = stage_.floor() != floor_;
    const bool wingBegins = stage_.wing() != wing_;
    floor_ = stage_.floor();
    wing_ = stage_.wing();
    emit changed();
    emit placeChanged();
    if (begins) {
        emit begun();
    }
    if (wingBegins) {
        emit wingBegun();
    }
}

} // namespace kippo
