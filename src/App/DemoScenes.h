#pragma once

#include "App/AppDelegate.h"

#include <string_view>
#include <vector>

namespace kippo {

/// Moments at which the demo can stand still for a look or a picture.
namespace DemoScenes {

/// Their names, such as "open" or "peek-done".
std::vector<std::string_view> names();

/// Puts into `defaults` what the scene found when the application started, such as a focus that began a while ago.
void prepare(std::string_view name, UserDefaults& defaults, Date now);

/// Brings the application into the scene; false when there is none of that name. A peek stays for a day.
bool arrange(std::string_view name, AppDelegate& application, Date now);

} // namespace DemoScenes

} // namespace kippo
