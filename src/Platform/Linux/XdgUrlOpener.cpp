#include "Platform/Linux/XdgUrlOpener.h"

#include "Platform/Posix/Descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

namespace kippo {

namespace {

constexpr std::string_view schemes[] = {"http://", "https://", "mailto:"};

bool isAllowed(std::string_view url) {
    const auto isPrintable = [](char character) { return character > ' ' && character < '\x7F'; };
    return std::ranges::any_of(schemes, [url](auto scheme) { return url.starts_with(scheme); }) &&
           std::ranges::all_of(url, isPrintable);
}

void tell(int report, int why) { std::ignore = write(report, &why, sizeof why); }

/// In the child's child: becomes the program, or tells why not. Only calls that are safe after a fork among threads.
[[noreturn]] void become(char* const* arguments, int report) {
    setsid();
    const int nothing = open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        dup2(nothing, standard);
    }
    std::signal(SIGPIPE, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execvp(arguments[0], arguments);
    tell(report, errno);
    _exit(1);
}

/// Runs a program that nobody waits for: the child ends at once, so that the program is nobody's child. Zero, or why
/// it could not be run.
int runApart(char* const* arguments) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return errno;
    }
    const Descriptor reading{ends[0]};
    Descriptor writing{ends[1]};
    const pid_t child = fork();
    if (child < 0) {
        return errno;
    }
    if (child == 0) {
        const pid_t program = fork();
        if (program == 0) {
            become(arguments, writing.get());
        } else if (program < 0) {
            tell(writing.get(), errno);
        }
        _exit(0);
    }
    writing = Descriptor{};
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    // Ends with nothing when the program has taken the place of the child's child.
    int why = 0;
    ssize_t count = 0;
    do {
        count = read(reading.get(), &why, sizeof why);
    } while (count < 0 && errno == EINTR);
    return count == sizeof why ? why : 0;
}

} // namespace

std::expected<void, UrlOpener::Error> XdgUrlOpener::open(const std::string& url) {
    if (!isAllowed(url)) {
        return std::unexpected{Error{"This address cannot be opened: it is neither a web page nor a letter."}};
    }
    std::string program = "xdg-open";
    std::string argument = url;
    const std::array<char*, 3> arguments{program.data(), argument.data(), nullptr};
    const int why = runApart(arguments.data());
    if (why == ENOENT) {
        return std::unexpected{Error{"This address cannot be opened: xdg-open is not installed."}};
    }
    if (why != 0) {
        return std::unexpected{Error{std::string{"This address cannot be opened: "} + std::strerror(why) + "."}};
    }
    return {};
}

} // namespace kippo
