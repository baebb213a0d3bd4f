#pragma once

namespace kippo {

class UserDefaults;

/// The settings of the application as a whole.
namespace Prefs {

/// Declares every setting with the value it has until the person changes it. Comes before anything reads one.
void registerDefaults(UserDefaults& defaults);

} // namespace Prefs

} // namespace kippo
