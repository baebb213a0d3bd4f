#include "Mascot/MascotLines.h"

#include <atomic>
#include <fmt/format.h>
#include <utility>
#include <vector>

namespace kippo::MascotLines {

namespace {

using Action = MascotMessage::Action;
using Choice = MascotMessage::Choice;
using Mood = MascotMessage::Mood;

std::string oneOf(std::vector<std::string> texts, Random& random) {
    std::uniform_int_distribution<std::size_t> index{0, texts.size() - 1};
    return std::move(texts[index(random)]);
}

MascotMessage message(std::string text, Mood mood, Choice primary, Choice secondary) {
    static std::atomic<std::uint64_t> latest{0};
    return {.id = ++latest,
            .text = std::move(text),
            .mood = mood,
            .primary = std::move(primary),
            .secondary = std::move(secondary),
            .wakeUp = false};
}

Choice start(std::string title, int minutes) {
    return {std::move(title), {.value = Action::Case::startFocus, .minutes = minutes}};
}

Choice startMinutes(int minutes) { return start(fmt::format("Start {} min", minutes), minutes); }

Choice answer(std::string title, Action::Case action) { return {std::move(title), {.value = action, .minutes = 0}}; }

} // namespace

MascotMessage launchQuestion(int focusMinutes, Random& random) {
    return message(oneOf({"Working today? 🍅", "Are you working?", "Hi! Working today? I'll time a pomodoro."}, random),
                   Mood::curious, start("Yes", focusMinutes), answer("Not today", Action::Case::muteToday));
}

MascotMessage workingNudge(int minutes, bool agentsBusy, int focusMinutes, Random& random) {
    std::vector<std::string> texts;
    if (agentsBusy) {
        texts = {"Claude's cooking. Want to focus too? 🍅",
                 fmt::format("Your agents are busy. Race them? {} minutes, go.", focusMinutes),
                 "While the robots work, you could… also work? 🍅"};
    } else {
        texts = {"Working? Use the pomodoro 🍅", "Working hard, or hardly working? Let's find out 🍅",
                 fmt::format("{} minutes straight! Want me to time a pomodoro?", minutes),
                 "Psst. Pomodoro? I'll guard the notch."};
    }
    return message(oneOf(std::move(texts), random), Mood::curious, startMinutes(focusMinutes),
                   answer("Not now", Action::Case::dismiss));
}

MascotMessage focusDone(bool nextIsLong, bool breakStarted, Random& random) {
    std::string text = nextIsLong ? "Four rounds! Long break. Go touch grass 🌿"
                                  : oneOf({"Ding! Break time. Stretch those wrists.",
                                           "Pomodoro done 🍅 Blink a few times.", "Nice round. Water break?"},
                                          random);
    return message(std::move(text), Mood::excited, answer("Stretch with me 🧘", Action::Case::stretch),
                   breakStarted ? answer("Just rest", Action::Case::dismiss)
                                : answer("Plain break", Action::Case::startBreak));
}

MascotMessage breakOver(int focusMinutes, Random& random) {
    return message(
        oneOf({"Break's over. Back to it?", "Recharged? One more round 🍅", "Okay, okay, back to work."}, random),
        Mood::sleepy, startMinutes(focusMinutes), answer("Not now", Action::Case::dismiss));
}

MascotMessage lateNight(int hour, int minute, Random& random) {
    const std::string time = fmt::format("{}:{:02}", (hour + 11) % 12 + 1, minute);
    auto said = message(
        oneOf({"It's " + time + ". I was asleep. You should be too 😴",
               "Still coding at " + time + "? The agents can finish without you. 🌙",
               "Zzz— huh? You're still here? Bed. Now.", "I tried to sleep. You kept typing. It's " + time + ". 😵💫"},
              random),
        Mood::sleepy, answer("Going to bed 🌙", Action::Case::goodNight),
        answer("5 more minutes", Action::Case::dismiss));
    said.wakeUp = true;
    return said;
}

MascotMessage notice(std::string text) {
    MascotMessage said = message(std::move(text), Mood::curious, answer("OK", Action::Case::dismiss), {});
    said.secondary.reset();
    return said;
}

} // namespace kippo::MascotLines
