#pragma once

#include "Support/Sounds.h"

#include <string>
#include <vector>

/// Computes the application's sounds, the same bytes each time. All begin and end in silence, and leave headroom.
namespace kippo::SoundSynthesis {

/// Samples a second.
inline constexpr int sampleRate = 48000;

/// One channel, from -1 to 1.
std::vector<float> render(Sound sound);

/// The bytes of a WAV file with those samples: 16 bits, one channel.
std::string waveFile(const std::vector<float>& samples);

} // namespace kippo::SoundSynthesis
