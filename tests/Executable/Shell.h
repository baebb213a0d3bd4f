#pragma once

#include "Fakes/PrivateHome.h"

#include <array>
#include <cstdio>
#include <sys/wait.h>
#include <unistd.h>

namespace kippo {

inline std::string readAll(int file) {
    std::string text;
    std::array<char, 4096> block{};
    // A terminal whose program has ended gives an error in place of an end.
    for (ssize_t count = 0; (count = read(file, block.data(), block.size())) > 0;) {
        text.append(block.data(), static_cast<std::size_t>(count));
    }
    return text;
}

/// A private home in which shell lines run without a display, `kippo` being the built executable.
class Shell : public PrivateHome {
public:
    struct Outcome {
        int status = -1;
        std::string output; ///< standard output and standard error, as they came
    };

    /// Runs `line`, in which there is no single quote, in the home folder; `environment` is all that it gets.
    Outcome run(const std::string& line, const std::string& environment) const {
        std::FILE* pipe =
            popen(("cd " + path() + "; env -i TERM=xterm " + environment +
                   " /bin/bash -c 'kippo() { \"" KIPPO_EXECUTABLE "\" \"$@\"; }; " + line + "' 2>&1 </dev/null")
                      .c_str(),
                  "r");
        Outcome outcome;
        outcome.output = readAll(fileno(pipe));
        outcome.status = WEXITSTATUS(pclose(pipe));
        return outcome;
    }
    Outcome run(const std::string& line) const { return run(line, "PATH=/usr/bin:/bin HOME=" + path()); }
};

} // namespace kippo
