#pragma once

#include "App/Terminal/Arguments.h"

namespace kippo::Terminal {

/// `kippo doctor`: looks for whatever may keep Kippo from working. Gives the exit status: 0 when all is well.
int doctor(const Request& request);

} // namespace kippo::Terminal
