#include "Settings/Views/LoginViewModel.h"

#include "Theme/Texts.h"

namespace kippo {

LoginViewModel::LoginViewModel(LoginItem& item, QObject* parent) : QObject(parent), item_(item), isOn_(item.isOn()) {}

void LoginViewModel::setStartsAtLogin(bool on) {
    const auto done = item_.set(on);
    problem_ = done ? QString{} : oneLine(done.error().sentence);
    isOn_ = item_.isOn();
    emit changed();
}

void LoginViewModel::refresh() {
    isOn_ = item_.isOn();
    emit changed();
}

} // namespace kippo
