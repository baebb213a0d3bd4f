#include "Sound/SoundSynthesis.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <numeric>

namespace kippo {

namespace {

constexpr Sound all[] = {Sound::glass, Sound::funk, Sound::purr, Sound::pop, Sound::hero, Sound::blow, Sound::tink};

float peak(const std::vector<float>& samples, std::size_t from, std::size_t count) {
    float loudest = 0;
    for (std::size_t i = from; i < from + count; ++i) {
        loudest = std::max(loudest, std::abs(samples[i]));
    }
    return loudest;
}

/// How alike two sounds are: 1 for the same one.
double likeness(const std::vector<float>& one, const std::vector<float>& other) {
    const std::size_t count = std::min(one.size(), other.size());
    const auto product = [count](const auto& a, const auto& b) {
        return std::inner_product(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(count), b.begin(), 0.0);
    };
    return std::abs(product(one, other)) / std::sqrt(product(one, one) * product(other, other));
}

} // namespace

TEST(SoundSynthesis, SoundsAreShortSoftAndWithoutClicks) {
    for (const Sound sound : all) {
        SCOPED_TRACE(name(sound));
        const auto samples = SoundSynthesis::render(sound);
        const double length = static_cast<double>(samples.size()) / SoundSynthesis::sampleRate;
        EXPECT_GE(length, 0.15);
        EXPECT_LE(length, 1.2);
        const float loudest = peak(samples, 0, samples.size());
        EXPECT_GT(loudest, 0.2F);
        EXPECT_LE(loudest, 0.5F) << "leaves room for two at once";
        // A click is a jump out of silence or into it: nothing of either end comes near what follows or came before.
        constexpr std::size_t edge = SoundSynthesis::sampleRate / 10000;
        EXPECT_LT(peak(samples, 0, edge), loudest * 0.01F);
        EXPECT_LT(peak(samples, samples.size() - 10 * edge, 10 * edge), loudest * 0.002F);
        EXPECT_EQ(samples.front(), 0);
        EXPECT_EQ(samples.back(), 0);
        // What leaves the loudspeaker pushed to one side.
        EXPECT_LT(std::abs(std::accumulate(samples.begin(), samples.end(), 0.0)) / SoundSynthesis::sampleRate, 0.001);
    }
}

TEST(SoundSynthesis, EachSoundIsItsOwn) {
    std::map<Sound, std::vector<float>> rendered;
    for (const Sound sound : all) {
        const auto samples = SoundSynthesis::render(sound);
        for (const auto& [other, itsSamples] : rendered) {
            EXPECT_LT(likeness(samples, itsSamples), 0.3) << name(sound) << ' ' << name(other);
        }
        rendered[sound] = samples;
        EXPECT_EQ(SoundSynthesis::render(sound), samples);
    }
}

TEST(SoundSynthesis, WavesHoldTheSamples) {
    const std::string bytes = SoundSynthesis::waveFile({0, 0.5F, -0.5F, -1});
    EXPECT_EQ(bytes.substr(0, 8), std::string("RIFF\x2C\0\0\0", 8));
    EXPECT_EQ(bytes.substr(22, 6), std::string("\1\0\x80\xBB\0\0", 6)) << "one channel, 48000 a second";
    EXPECT_EQ(bytes.substr(36), std::string("data\x08\0\0\0\0\0\0\x40\0\xC0\x01\x80", 16));
}

} // namespace kippo
