#pragma once

#include "Support/SingleInstance.h"

namespace kippo {

/// One machine with no other Kippo, unless the test says that there is. The test asks through the callbacks.
class FakeSingleInstance final : public SingleInstance {
public:
    bool claim() override {
        timesAsked += anotherRuns ? 1 : 0;
        return !anotherRuns;
    }

    bool anotherRuns = false;
    int timesAsked = 0; ///< how often the other one was asked to show its settings
};

} // namespace kippo
