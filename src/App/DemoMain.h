#pragma once

#include "App/Options.h"

/// The ways of starting `kippo-app` that show samples: nothing of the person's is read or changed. Each gives the
/// program's exit status.
namespace kippo::DemoMain {

/// The play, a scene of it, or a picture of a scene.
int run(const Options::Demo& options);

/// Draws one of the pictures that the drawings are judged by.
int drawContactSheet(const QString& subject, const QString& file);

} // namespace kippo::DemoMain
