#pragma once

#include "App/Prefs.h"
#include "Fakes/FakeDefaults.h"

namespace kippo {

/// Settings that nobody has changed yet.
inline FakeDefaults unchangedSettings() {
    FakeDefaults made;
    Prefs::registerDefaults(made);
    return made;
}

} // namespace kippo
