#pragma once

#include "Mascot/Coach.h"

#include <string>

namespace kippo {

/// How long the mascot keeps quiet, as a sentence; empty when he may speak.
std::string quietSentence(const Coach::Quiet& quiet, Date now);

} // namespace kippo
