#pragma once

#include "Support/Time.h"

namespace kippo {

/// The first moment of the user's local day that lies `offset` days from the one that holds `date`. Right where a day
/// has 23 or 25 hours, and where clocks skip midnight.
Date startOfLocalDay(Date date, int offset = 0);

} // namespace kippo
