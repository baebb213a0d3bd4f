#include "Platform/Qt/DefaultsWatch.h"

#include "Platform/Linux/JsonUserDefaults.h"
#include "Support/Folders.h"

namespace kippo {

namespace {

/// Editors write in several steps.
constexpr Seconds settling{0.3};
constexpr Seconds interval{60};
constexpr Seconds tolerance{30};

} // namespace

DefaultsWatch::DefaultsWatch(JsonUserDefaults& defaults, const std::string& path, Scheduler& scheduler) {
    makeFolders(path.substr(0, path.rfind('/')));
    files_.setCallback([this, &defaults, &scheduler](const std::string&) {
        soon_ = scheduler.after(settling, [&defaults] { defaults.reload(); });
    });
    files_.watch({path});
    if (files_.descriptor() >= 0) {
        ready_.emplace(files_.descriptor(), QSocketNotifier::Read);
        QObject::connect(&*ready_, &QSocketNotifier::activated, &*ready_, [this] { files_.dispatch(); });
    }
    atLeast_ = scheduler.every(interval, tolerance, [&defaults] { defaults.reload(); });
}

} // namespace kippo
