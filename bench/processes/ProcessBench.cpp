// What a snapshot of the process table costs in CPU time (user and system): read from /proc, and by way of ps and two
// runs of lsof, on the same processes and in turns. The processes sleep; one in five is an agent's, with two children
// and a listening socket, so that ports and folders are asked for as in real use.

#include "Agents/ProcessScanner.h"
#include "Platform/Linux/ProcProcessLister.h"
#include "Platform/Posix/CommandProcessLister.h"
#include "Platform/Posix/PosixProcessRunner.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace kippo;

constexpr int rounds = 15;

/// The most that the design allows.
constexpr double wantedRatio = 20;

/// Sleeping processes in a group of their own, killed at the end.
class Sleepers {
public:
    explicit Sleepers(int count) {
        const int listener = socket(AF_INET, SOCK_STREAM, 0);
        listen(listener, 1);
        for (int made = 0; made < count;) {
            const bool agent = made % 15 == 0 && made + 3 <= count;
            agent ? start("/bin/sh", {"claude", "-c", "sleep 600 & sleep 600 & wait"})
                  : start("/bin/sleep", {"sleep", "600"});
            made += agent ? 3 : 1;
        }
        close(listener);
        // Young processes' command lines are read again each time; by now these count as settled.
        std::this_thread::sleep_for(std::chrono::seconds{5});
    }
    ~Sleepers() {
        killpg(group_, SIGKILL);
        for (const pid_t pid : pids_) {
            waitpid(pid, nullptr, 0);
        }
    }
    Sleepers(const Sleepers&) = delete;
    Sleepers& operator=(const Sleepers&) = delete;

private:
    void start(const char* path, std::vector<const char*> arguments) {
        arguments.push_back(nullptr);
        const pid_t pid = fork();
        if (pid == 0) {
            setpgid(0, group_);
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            execv(path, const_cast<char* const*>(arguments.data()));
            _exit(1);
        }
        if (pid < 0) {
            std::perror("fork");
            std::exit(1);
        }
        group_ = group_ == 0 ? pid : group_;
        setpgid(pid, group_);
        pids_.push_back(pid);
    }

    pid_t group_ = 0;
    std::vector<pid_t> pids_;
};

double milliseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

/// CPU time of this process and of the children that it has waited for.
double cpuTime() {
    timespec own{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &own);
    rusage children{};
    getrusage(RUSAGE_CHILDREN, &children);
    return static_cast<double>(own.tv_sec) * 1e3 + static_cast<double>(own.tv_nsec) / 1e6 +
           milliseconds(children.ru_utime) + milliseconds(children.ru_stime);
}

double cost(const std::function<void()>& work) {
    const double before = cpuTime();
    work();
    return cpuTime() - before;
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// Prints one row; whether both ratios are good enough.
bool measure(int count) {
    const Sleepers sleepers{count};
    ProcProcessLister steady;
    PosixProcessRunner runner;
    CommandProcessLister commands{runner};
    auto table = ProcessScanner::snapshot(steady, {});
    std::vector<double> cold, warm, slow;
    for (int round = 0; round < rounds; ++round) {
        slow.push_back(cost([&] { ProcessScanner::snapshot(commands, {}); }));
        cold.push_back(cost([] {
            ProcProcessLister fresh;
            ProcessScanner::snapshot(fresh, {});
        }));
        warm.push_back(cost([&] { table = ProcessScanner::snapshot(steady, {}); }));
    }
    const double programs = median(slow);
    const double first = median(cold);
    const double later = median(warm);
    std::printf("%9d %8zu %7zu %6zu %11.1f %11.2f %7.0f %11.2f %7.0f\n", count, table.procs.size(),
                table.agentRoots.size(), table.ports.size(), programs, first, programs / first, later,
                programs / later);
    return programs / first >= wantedRatio && programs / later >= wantedRatio;
}

} // namespace

int main() {
    std::printf("CPU milliseconds per snapshot, medians of %d; a ratio says how many times as much ps and lsof cost "
                "(wanted: %.0f)\n",
                rounds, wantedRatio);
    std::printf("%9s %8s %7s %6s %11s %11s %7s %11s %7s\n", "sleepers", "listed", "agents", "ports", "ps + 2 lsof",
                "first /proc", "ratio", "later /proc", "ratio");
    bool good = true;
    for (const int count : {150, 600}) {
        good = measure(count) && good;
    }
    return good ? 0 : 1;
}
