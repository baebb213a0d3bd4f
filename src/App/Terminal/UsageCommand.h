#pragma once

#include "App/Terminal/Arguments.h"

namespace kippo::Terminal {

/// `kippo usage`: what Claude Code used today and in the week. Gives the exit status.
int usage(const Request& request);

} // namespace kippo::Terminal
