#include "Support/Sounds.h"

namespace kippo {

std::string_view name(Sound sound) {
    switch (sound) {
    case Sound::glass:
        return "Glass";
    case Sound::funk:
        return "Funk";
    case Sound::purr:
        return "Purr";
    case Sound::pop:
        return "Pop";
    case Sound::hero:
        return "Hero";
    case Sound::blow:
        return "Blow";
    case Sound::tink:
        return "Tink";
    }
    return {};
}

} // namespace kippo
