#include "App/Terminal/Onlooker.h"

#include "Platform/Linux/Installation.h"

#include <utility>

namespace kippo::Terminal {

namespace {

// The application or the user may change the settings meanwhile.
constexpr Seconds settingsInterval{5};
constexpr Seconds settingsTolerance{1};

} // namespace

Onlooker::Onlooker()
    : defaults_(places_.configFolder + "/defaults.json", JsonUserDefaults::Access::readOnly),
      store_(places_,
             {.scheduler = scheduler_,
              .defaults = defaults_,
              .work = queue_,
              .scans = queue_,
              .processes = lister_,
              .files = &files_,
              .userFiles = userFiles_,
              .runner = runner_,
              .trash = trash_,
              .executable = Installation::executablePath()},
             AgentStore::Role::onlooker) {}

SessionList Onlooker::look() {
    store_.refreshOnce();
    return list();
}

void Onlooker::follow(std::function<void()> changed) {
    if (files_.descriptor() >= 0) {
        filesReady_ = scheduler_.addDescriptor(files_.descriptor(), [this] { files_.dispatch(); });
    }
    settings_ = scheduler_.every(settingsInterval, settingsTolerance, [this] { defaults_.reload(); });
    store_.start();
    // Someone is looking: the costs in the rows should be those of now.
    store_.setVisible(true);
    // Only now, so that nobody is told of the half list between the first reads.
    changes_ = store_.observe(std::move(changed));
}

} // namespace kippo::Terminal
