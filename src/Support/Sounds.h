#pragma once

#include <string_view>

namespace kippo {

/// The seven short sounds of the application.
enum class Sound { glass, funk, purr, pop, hero, blow, tink };

/// The sound's name, such as "Glass".
std::string_view name(Sound sound);

/// Plays short sounds. Abstract so that tests hear what was played; the real one is DesktopSounds. Where there is no
/// sound server, nothing is heard and nothing fails.
class Sounds {
public:
    virtual ~Sounds() = default;
    /// Begins to play and returns at once.
    virtual void play(Sound sound) = 0;
};

} // namespace kippo
