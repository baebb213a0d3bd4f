#pragma once

#include "Support/Sounds.h"

#include <vector>

namespace kippo {

/// Sounds that nobody hears; `played` is what was played so far.
class FakeSounds final : public Sounds {
public:
    std::vector<Sound> played;

    void play(Sound sound) override { played.push_back(sound); }
};

} // namespace kippo
