#pragma once

#include "Support/ProcessRunner.h"

#include <map>
#include <vector>

namespace kippo {

/// Programs that print what the test says. Command lines are the path and the arguments with spaces between them.
class FakeProcessRunner final : public ProcessRunner {
public:
    std::map<std::string, std::string> outputs; ///< by command line; every other program cannot be started
    std::vector<std::string> calls;             ///< the command lines, in order

    std::optional<std::string> output(const std::string& path, std::span<const std::string> arguments,
                                      Seconds /*patience*/) override {
        std::string line = path;
        for (const auto& argument : arguments) {
            line += " " + argument;
        }
        calls.push_back(line);
        const auto known = outputs.find(line);
        return known == outputs.end() ? std::nullopt : std::optional{known->second};
    }
};

} // namespace kippo
