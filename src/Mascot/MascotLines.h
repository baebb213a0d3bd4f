#pragma once

#include "Mascot/MascotMessage.h"

#include <random>

/// Everything that the mascot says, with its answers. Of several texts one is drawn at random.
namespace kippo::MascotLines {

using Random = std::mt19937;

/// Once a day: is it a day of work?
MascotMessage launchQuestion(int focusMinutes, Random& random);
/// After `minutes` of activity, while no timer runs.
MascotMessage workingNudge(int minutes, bool agentsBusy, int focusMinutes, Random& random);
/// A focus ended; `breakStarted` says whether its break has begun already.
MascotMessage focusDone(bool nextIsLong, bool breakStarted, Random& random);
MascotMessage breakOver(int focusMinutes, Random& random);
/// At night, at `hour` (0 to 23) and `minute`.
MascotMessage lateNight(int hour, int minute, Random& random);
/// Something about Kippo himself that the person has to know, with an "OK".
MascotMessage notice(std::string text);

} // namespace kippo::MascotLines
