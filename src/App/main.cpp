#include "Agents/HookBridge.h"
#include "App/Terminal/Commands.h"

#include <span>

int main(int argc, char** argv) {
    const std::span<char* const> arguments{argv, static_cast<std::size_t>(argc)};
    if (kippo::HookBridge::isHookInvocation(arguments)) {
        kippo::HookBridge::handleHookInvocation(arguments);
        return 0;
    }
    return kippo::Terminal::run(arguments);
}
