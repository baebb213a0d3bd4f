#include "Sound/SoundSynthesis.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <span>
#include <string_view>

namespace kippo::SoundSynthesis {

namespace {

/// A sine that swells, fades, and may glide. Times in seconds, frequencies in hertz.
struct Partial {
    double start = 0;      ///< when it begins
    double frequency = 0;  ///< where it arrives
    double amplitude = 0;  ///< before the sound is brought to its level
    double decay = 0;      ///< time in which it falls to 1/e
    double attack = 0.004; ///< time in which it swells
    double from = 0;       ///< the frequency at which it begins; 0 for one that does not glide
    double glide = 0;      ///< time in which all but 1/e of the way is done
    double tremolo = 0;    ///< swells and ebbs so often a second
};

/// Noise around a frequency, as of breath. It swells and ebbs once over the whole sound.
struct Breath {
    double frequency = 0; ///< where it begins
    double until = 0;     ///< where it ends
    double width = 0;     ///< of the band
    double amplitude = 0; ///< 0 for none
};

struct Recipe {
    double length = 0; ///< seconds
    double peak = 0;   ///< the level of the loudest sample; high sounds seem louder and get less
    std::span<const Partial> partials;
    Breath breath{};
};

/// The last part of each sound, over which it is led to silence.
constexpr double release = 0.25;
constexpr double releaseShare = 0.4; ///< of a sound, at most

// A struck glass: partials of a bowl, each a near pair that beats slowly.
constexpr Partial glass[] = {
    {.frequency = 1244.5, .amplitude = 1.0, .decay = 0.30},  {.frequency = 1247.0, .amplitude = 0.5, .decay = 0.28},
    {.frequency = 2887.0, .amplitude = 0.32, .decay = 0.15}, {.frequency = 2893.0, .amplitude = 0.16, .decay = 0.14},
    {.frequency = 5289.0, .amplitude = 0.10, .decay = 0.07}, {.frequency = 622.3, .amplitude = 0.22, .decay = 0.20},
};

// Two plucked bass notes a fourth apart, the second insisting.
constexpr Partial funk[] = {
    {.frequency = 293.7, .amplitude = 1.0, .decay = 0.10, .from = 311, .glide = 0.012},
    {.frequency = 587.3, .amplitude = 0.45, .decay = 0.06},
    {.frequency = 881.0, .amplitude = 0.28, .decay = 0.04},
    {.frequency = 1174.7, .amplitude = 0.12, .decay = 0.03},
    {.start = 0.15, .frequency = 392.0, .amplitude = 1.0, .decay = 0.14, .from = 415, .glide = 0.012},
    {.start = 0.15, .frequency = 784.0, .amplitude = 0.45, .decay = 0.08},
    {.start = 0.15, .frequency = 1176.0, .amplitude = 0.28, .decay = 0.05},
    {.start = 0.15, .frequency = 1568.0, .amplitude = 0.12, .decay = 0.03},
};

// A content animal: low harmonics that flutter, rising a little.
constexpr Partial purr[] = {
    {.frequency = 185, .amplitude = 1.0, .decay = 0.45, .attack = 0.08, .from = 150, .glide = 0.15, .tremolo = 24},
    {.frequency = 370, .amplitude = 0.6, .decay = 0.40, .attack = 0.08, .from = 300, .glide = 0.15, .tremolo = 24},
    {.frequency = 555, .amplitude = 0.35, .decay = 0.35, .attack = 0.08, .from = 450, .glide = 0.15, .tremolo = 24},
    {.frequency = 740, .amplitude = 0.15, .decay = 0.30, .attack = 0.08, .from = 600, .glide = 0.15, .tremolo = 24},
};

// A bubble: one sine that shoots up and is gone.
constexpr Partial pop[] = {
    {.frequency = 980, .amplitude = 1.0, .decay = 0.035, .from = 320, .glide = 0.03},
    {.frequency = 490, .amplitude = 0.3, .decay = 0.025, .from = 160, .glide = 0.03},
};

// A major chord climbed note by note, which rings on together.
constexpr Partial hero[] = {
    {.frequency = 523.3, .amplitude = 0.8, .decay = 0.34, .attack = 0.008},
    {.frequency = 1046.5, .amplitude = 0.20, .decay = 0.18},
    {.start = 0.11, .frequency = 659.3, .amplitude = 0.8, .decay = 0.34, .attack = 0.008},
    {.start = 0.11, .frequency = 1318.5, .amplitude = 0.18, .decay = 0.18},
    {.start = 0.22, .frequency = 784.0, .amplitude = 0.8, .decay = 0.34, .attack = 0.008},
    {.start = 0.22, .frequency = 1568.0, .amplitude = 0.16, .decay = 0.18},
    {.start = 0.36, .frequency = 1046.5, .amplitude = 1.0, .decay = 0.36, .attack = 0.008},
    {.start = 0.36, .frequency = 2093.0, .amplitude = 0.18, .decay = 0.18},
    {.start = 0.36, .frequency = 3139.5, .amplitude = 0.05, .decay = 0.10},
};

// Air across the mouth of a bottle, sinking.
constexpr Partial blow[] = {
    {.frequency = 330, .amplitude = 0.55, .decay = 0.32, .attack = 0.09, .from = 415, .glide = 0.22},
    {.frequency = 660, .amplitude = 0.06, .decay = 0.24, .attack = 0.09, .from = 830, .glide = 0.22},
};

// A fingernail on thin metal.
constexpr Partial tink[] = {
    {.frequency = 2349.3, .amplitude = 1.0, .decay = 0.045, .attack = 0.0015},
    {.frequency = 6330.0, .amplitude = 0.22, .decay = 0.018, .attack = 0.0015},
    {.frequency = 3951.0, .amplitude = 0.28, .decay = 0.025, .attack = 0.0015},
};

Recipe recipe(Sound sound) {
    switch (sound) {
    case Sound::glass:
        return {.length = 1.1, .peak = 0.32, .partials = glass};
    case Sound::funk:
        return {.length = 0.6, .peak = 0.45, .partials = funk};
    case Sound::purr:
        return {.length = 0.8, .peak = 0.45, .partials = purr};
    case Sound::pop:
        return {.length = 0.18, .peak = 0.45, .partials = pop};
    case Sound::hero:
        return {.length = 1.2, .peak = 0.40, .partials = hero};
    case Sound::blow:
        return {.length = 0.75,
                .peak = 0.40,
                .partials = blow,
                .breath = {.frequency = 1500, .until = 700, .width = 350, .amplitude = 0.4}};
    case Sound::tink:
        return {.length = 0.22, .peak = 0.25, .partials = tink};
    }
    return {};
}

/// From 0 to 1 and level at both ends, as `share` goes from 0 to 1.
double ease(double share) { return 0.5 - 0.5 * std::cos(std::numbers::pi * std::clamp(share, 0.0, 1.0)); }

/// How far a swing is from its lower end, from 0 to 1.
double swing(double frequency, double time) { return 0.5 - 0.5 * std::cos(2 * std::numbers::pi * frequency * time); }

void add(const Partial& partial, std::vector<float>& samples) {
    constexpr double step = 1.0 / sampleRate;
    const double fade = std::exp(-step / partial.decay);
    const double approach = partial.from > 0 ? std::exp(-step / partial.glide) : 1;
    double level = partial.amplitude;
    double away = partial.from > 0 ? partial.from - partial.frequency : 0;
    double phase = 0;
    double time = 0;
    for (auto i = static_cast<std::size_t>(partial.start * sampleRate); i < samples.size(); ++i) {
        const double swell = time < partial.attack ? ease(time / partial.attack) : 1;
        const double flutter = partial.tremolo > 0 ? 0.1 + 0.9 * swing(partial.tremolo, time) : 1;
        samples[i] += static_cast<float>(level * swell * flutter * std::sin(phase));
        phase += 2 * std::numbers::pi * (partial.frequency + away) * step;
        level *= fade;
        away *= approach;
        time += step;
    }
}

/// White noise through a resonator that follows the breath's frequency.
void add(const Breath& breath, std::vector<float>& samples) {
    std::uint32_t state = 1;
    double before = 0;
    double last = 0;
    const double radius = std::exp(-std::numbers::pi * breath.width / sampleRate);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double share = static_cast<double>(i) / static_cast<double>(samples.size());
        const double frequency = breath.frequency + (breath.until - breath.frequency) * share;
        state = state * 1664525U + 1013904223U;
        const double noise = static_cast<double>(state) / 2147483648.0 - 1;
        const double sample = (1 - radius) * noise +
                              2 * radius * std::cos(2 * std::numbers::pi * frequency / sampleRate) * last -
                              radius * radius * before;
        before = last;
        last = sample;
        samples[i] += static_cast<float>(breath.amplitude * ease(share * 4) * ease((1 - share) / 0.75) * sample);
    }
}

void append(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
    }
}

} // namespace

std::vector<float> render(Sound sound) {
    const Recipe parts = recipe(sound);
    std::vector<float> samples(static_cast<std::size_t>(std::lround(parts.length * sampleRate)));
    for (const Partial& partial : parts.partials) {
        add(partial, samples);
    }
    if (parts.breath.amplitude > 0) {
        add(parts.breath, samples);
    }
    const double fade = std::min(release, parts.length * releaseShare) * sampleRate;
    float loudest = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] *= static_cast<float>(ease(static_cast<double>(samples.size() - 1 - i) / fade));
        loudest = std::max(loudest, std::abs(samples[i]));
    }
    for (float& sample : samples) {
        sample *= static_cast<float>(parts.peak) / loudest;
    }
    return samples;
}

std::string waveFile(const std::vector<float>& samples) {
    constexpr std::uint32_t bytesPerSample = 2;
    constexpr std::uint32_t headerAfterSize = 36;
    const auto size = static_cast<std::uint32_t>(samples.size()) * bytesPerSample;
    std::string bytes = "RIFF";
    append(bytes, headerAfterSize + size, 4);
    bytes += "WAVEfmt ";
    append(bytes, 16, 4);                          // the size of what follows of the format
    append(bytes, 1, 2);                           // plain samples
    append(bytes, 1, 2);                           // channels
    append(bytes, sampleRate, 4);                  //
    append(bytes, sampleRate * bytesPerSample, 4); // bytes a second
    append(bytes, bytesPerSample, 2);              // bytes of a sample of all channels
    append(bytes, bytesPerSample * 8, 2);          // bits of a sample
    bytes += "data";
    append(bytes, size, 4);
    for (const float sample : samples) {
        append(bytes, static_cast<std::uint32_t>(std::lround(sample * INT16_MAX)), bytesPerSample);
    }
    return bytes;
}

} // namespace kippo::SoundSynthesis
