// A hook's input comes from an agent and may hold anything: whatever it is, the line that is written is one line, valid
// UTF-8, and read back as the event that it says.

#include "Agents/HookBridge.h"
#include "Support/Text.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kippo;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    HookBridge::parse(input);
    for (const std::string_view agent : {"", "codex", "cursor", "gemini"}) {
        const auto line = HookBridge::record(input, agent, dateFromUnix(1795226400));
        if (!line) {
            continue;
        }
        const std::string_view text = std::string_view{*line}.substr(0, line->size() - 1);
        const auto event = HookBridge::parse(text);
        if (line->back() != '\n' || text.contains('\n') || Text::validUtf8(text) != text || !event ||
            event->source.value_or("") != agent || (event->prompt && Text::isLongerThan(*event->prompt, 300))) {
            std::abort();
        }
    }
    return 0;
}
