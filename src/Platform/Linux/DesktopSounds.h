#pragma once

#include "Support/Sounds.h"

#include <memory>

namespace kippo {

/// Plays the computed sounds through the desktop's sound server (libcanberra, so PulseAudio, PipeWire or ALSA) as
/// event sounds: their volume and mute are the ones that the desktop has for those. A thread of its own talks to the
/// server, so that nobody waits for one that hangs; what could not be played within a second is dropped, for a late
/// sound tells nothing. Connects at the first sound, and again after the server was restarted.
class DesktopSounds final : public Sounds {
public:
    DesktopSounds();
    /// Cuts off what is still heard.
    ~DesktopSounds() override;
    DesktopSounds(const DesktopSounds&) = delete;
    DesktopSounds& operator=(const DesktopSounds&) = delete;

    void play(Sound sound) override;

private:
    class Player;
    /// Shared with the thread, which a server that hangs lets outlive this object.
    std::shared_ptr<Player> player_;
};

} // namespace kippo
