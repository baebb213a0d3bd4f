#include "Fakes/FakeProcessLister.h"
#include "Fakes/PrivateHome.h"
#include "Platform/Linux/ListeningSockets.h"
#include "Platform/Linux/ProcProcessLister.h"
#include "Platform/Posix/CommandProcessLister.h"
#include "Platform/Posix/PosixProcessRunner.h"

#include <arpa/inet.h>
#include <array>
#include <csignal>
#include <gmock/gmock.h>
#include <memory>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kippo {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A socket that is bound to a port of the loopback, 0 for any that is free.
int bound(int family, int port) {
    const int socket = ::socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int yes = 1;
    setsockopt(socket, IPPROTO_IPV6, IPV6_V6ONLY, &yes, sizeof yes); // of no effect on the other family
    sockaddr_in old{
        .sin_family = AF_INET, .sin_port = htons(static_cast<std::uint16_t>(port)), .sin_addr = {}, .sin_zero = {}};
    old.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    sockaddr_in6 current{.sin6_family = AF_INET6,
                         .sin6_port = old.sin_port,
                         .sin6_flowinfo = 0,
                         .sin6_addr = in6addr_loopback,
                         .sin6_scope_id = 0};
    const bool isOld = family == AF_INET;
    static_cast<void>(bind(socket, isOld ? reinterpret_cast<sockaddr*>(&old) : reinterpret_cast<sockaddr*>(&current),
                           isOld ? sizeof old : sizeof current));
    return socket;
}

int portOf(int socket) {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length);
    return ntohs(address.sin_port);
}

/// A real process in a folder of its own that listens on a loopback port and has one child. It says when it is ready.
class Subject {
public:
    Subject() {
        std::array<int, 2> ready{};
        EXPECT_EQ(pipe2(ready.data(), O_CLOEXEC), 0);
        pid_ = fork();
        if (pid_ == 0) {
            live(ready[1]);
        }
        close(ready[1]);
        EXPECT_EQ(read(ready[0], &facts_, sizeof facts_), static_cast<ssize_t>(sizeof facts_));
        close(ready[0]);
    }
    ~Subject() {
        // The child ends with its parent.
        if (!ended_) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
    }
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    Pid pid() const { return pid_; }
    Pid child() const { return facts_.child; }
    int port() const { return facts_.port; }
    std::string folder() const { return home_.path(); }
    /// Waits for its end, so that it is no zombie either.
    int end() {
        int status = 0;
        ended_ = waitpid(pid_, &status, 0) == pid_;
        return status;
    }

private:
    struct Facts {
        Pid child = 0;
        int port = 0;
    };

    [[noreturn]] void live(int ready) const {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        // Whoever reads the tests' output must not wait for these.
        const int nowhere = open("/dev/null", O_RDWR);
        for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            dup2(nowhere, standard);
        }
        if (chdir(home_.path().c_str()) != 0) {
            _exit(1);
        }
        const Pid self = getpid();
        Facts facts;
        facts.child = fork(); // before there are sockets that it would hold
        if (facts.child == 0) {
            // Only once it is sure to end with its parent may anyone go on, or it could be left running for ever.
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            raise(getppid() == self ? SIGSTOP : SIGKILL);
        } else {
            waitpid(facts.child, nullptr, WUNTRACED);
            const int first = bound(AF_INET, 0);
            listen(first, 1);
            facts.port = portOf(first);
            // The same port on the other family, as servers do: one port for whoever looks.
            listen(bound(AF_INET6, facts.port), 1);
            static_cast<void>(write(ready, &facts, sizeof facts));
        }
        close(ready);
        for (;;) {
            pause();
        }
    }

    PrivateHome home_;
    Pid pid_ = 0;
    Facts facts_;
    bool ended_ = false;
};

const ProcInfo* find(const std::vector<ProcInfo>& rows, Pid pid) {
    const auto row = std::ranges::find(rows, pid, &ProcInfo::pid);
    return row == rows.end() ? nullptr : &*row;
}

/// A real lister, or the fake filled with what a real one would find.
std::unique_ptr<ProcessLister> makeLister(std::string_view name, const Subject& subject, ProcessRunner& runner) {
    if (name == "proc") {
        return std::make_unique<ProcProcessLister>();
    }
    if (name == "command") {
        return std::make_unique<CommandProcessLister>(runner);
    }
    auto lister = std::make_unique<FakeProcessLister>();
    lister->table = {{.pid = getpid(), .ppid = getppid(), .rssKB = 1, .command = "tests"},
                     {.pid = subject.pid(), .ppid = getpid(), .rssKB = 1, .command = "tests"},
                     {.pid = subject.child(), .ppid = subject.pid(), .rssKB = 1, .command = "tests"}};
    lister->ports = {{subject.pid(), {subject.port()}}};
    lister->cwds = {{subject.pid(), subject.folder()}};
    return lister;
}

} // namespace

struct ProcessListerContract : testing::TestWithParam<const char*> {
    Subject subject;
    PosixProcessRunner runner;
    std::unique_ptr<ProcessLister> lister = makeLister(GetParam(), subject, runner);
};

TEST_P(ProcessListerContract, ListsAProcessWithItsChild) {
    const auto rows = lister->processes();
    const auto* self = find(rows, getpid());
    const auto* parent = find(rows, subject.pid());
    const auto* child = find(rows, subject.child());
    ASSERT_TRUE(self && parent && child);
    EXPECT_EQ(parent->ppid, getpid());
    EXPECT_EQ(child->ppid, subject.pid());
    EXPECT_GT(parent->rssKB, 0);
    EXPECT_GE(parent->uptime, 0);
    EXPECT_LT(parent->uptime, 600);
    EXPECT_EQ(parent->command, self->command);
    EXPECT_FALSE(parent->command.empty());
    EXPECT_FALSE(parent->adopted);
}

TEST_P(ProcessListerContract, TellsPortsAndFoldersOfWhomItIsAskedFor) {
    const std::array wanted{subject.pid(), subject.child(), Pid{2147480000}};
    const auto ports = lister->listeningPorts(wanted);
    EXPECT_THAT(ports, ElementsAre(testing::Pair(subject.pid(), ElementsAre(subject.port()))));
    EXPECT_EQ(lister->workingDirectories(wanted).at(subject.pid()), subject.folder());
    EXPECT_EQ(lister->workingDirectories(wanted).count(2147480000), 0U);
    const std::array other{subject.child()};
    EXPECT_THAT(lister->listeningPorts(other), IsEmpty());
    EXPECT_THAT(lister->listeningPorts({}), IsEmpty());
    EXPECT_THAT(lister->workingDirectories({}), IsEmpty());
}

TEST_P(ProcessListerContract, EndsAProcessPolitely) {
    const auto listed = lister->processes();
    const auto startTicks = find(listed, subject.pid())->startTicks;
    if (startTicks != 0) {
        EXPECT_FALSE(lister->terminate(subject.pid(), startTicks + 1)) << "another process had that pid";
        EXPECT_TRUE(find(lister->processes(), subject.pid()));
    }
    EXPECT_TRUE(lister->terminate(subject.pid(), startTicks));
    EXPECT_FALSE(lister->terminate(2147480000, 0));
    if (std::string_view{GetParam()} != "fake") {
        const int status = subject.end();
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
        EXPECT_FALSE(lister->terminate(subject.pid(), startTicks));
        EXPECT_FALSE(lister->terminate(0, 0));
        EXPECT_FALSE(lister->terminate(-1, 0));
        const auto rows = lister->processes();
        EXPECT_FALSE(find(rows, subject.pid()));
    }
}

INSTANTIATE_TEST_SUITE_P(Listers, ProcessListerContract, testing::Values("fake", "proc", "command"),
                         [](const auto& name) { return std::string{name.param}; });

TEST(ProcProcessLister, NoticesAnotherProgramUnderTheSamePid) {
    std::array<int, 2> go{}, done{};
    ASSERT_EQ(pipe(go.data()), 0);
    ASSERT_EQ(pipe2(done.data(), O_CLOEXEC), 0);
    const Pid pid = fork();
    if (pid == 0) {
        char byte = 0;
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        static_cast<void>(read(go[0], &byte, 1));
        execl("/bin/sleep", "claude", "600", nullptr);
        _exit(1);
    }
    ProcProcessLister lister;
    const auto before = lister.processes();
    close(done[1]);
    ASSERT_TRUE(find(before, pid));
    EXPECT_FALSE(find(before, pid)->command.starts_with("claude"));
    ASSERT_EQ(write(go[1], "x", 1), 1);
    char byte = 0;
    EXPECT_EQ(read(done[0], &byte, 1), 0); // closed by the exec
    const auto after = lister.processes();
    ASSERT_TRUE(find(after, pid));
    EXPECT_EQ(find(after, pid)->command, "claude 600");
    EXPECT_EQ(find(after, pid)->startTicks, find(before, pid)->startTicks);
    kill(pid, SIGKILL);
    // Ended but not yet waited for: a zombie is not listed.
    siginfo_t info{};
    waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT);
    EXPECT_FALSE(find(lister.processes(), pid));
    waitpid(pid, nullptr, 0);
    for (const int end : {go[0], go[1], done[0]}) {
        close(end);
    }
}

TEST(ProcProcessLister, SeesListenersComeAndGo) {
    ProcProcessLister lister;
    const auto listAgain = [&] {
        const std::array wanted{getpid()};
        lister.processes();
        return lister.listeningPorts(wanted)[getpid()];
    };
    const auto before = listAgain();
    const int socket = bound(AF_INET, 0);
    const int port = portOf(socket);
    EXPECT_EQ(listAgain(), before) << "bound is not listening";
    ASSERT_EQ(listen(socket, 1), 0);
    EXPECT_THAT(listAgain(), testing::Contains(port));
    EXPECT_THAT(listAgain(), testing::Contains(port));
    // A child keeps the socket listening, so only this process's own descriptors tell that it let go.
    std::array<int, 2> life{};
    ASSERT_EQ(pipe2(life.data(), O_CLOEXEC), 0);
    const Pid child = fork();
    if (child == 0) {
        char byte = 0;
        close(life[1]);
        static_cast<void>(read(life[0], &byte, 1));
        _exit(0);
    }
    close(socket);
    EXPECT_EQ(listAgain(), before);
    const std::array wanted{child};
    EXPECT_THAT(lister.listeningPorts(wanted)[child], testing::Contains(port));
    close(life[0]);
    close(life[1]);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(listAgain(), before);
}

TEST(ProcProcessLister, KeepsFewDescriptorsAndListsAllTheSame) {
    const auto openDescriptors = [] { return std::distance(std::filesystem::directory_iterator{"/proc/self/fd"}, {}); };
    const Subject subject;
    rlimit usual{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &usual), 0);
    const auto before = openDescriptors();
    for (const rlim_t limit : {rlim_t{64}, rlim_t{2}, usual.rlim_cur}) {
        const rlimit tight{limit, usual.rlim_max};
        setrlimit(RLIMIT_NOFILE, &tight);
        std::optional<ProcProcessLister> lister{std::in_place};
        setrlimit(RLIMIT_NOFILE, &usual);
        const std::optional<Subject> passing{std::in_place};
        for (int listing = 0; listing < 3; ++listing) {
            const auto rows = lister->processes();
            EXPECT_TRUE(find(rows, subject.pid()) && find(rows, subject.child()) && find(rows, passing->pid()));
            EXPECT_LE(openDescriptors() - before, static_cast<std::ptrdiff_t>(limit / 2));
            EXPECT_GT(openDescriptors(), before);
        }
        lister.reset();
        EXPECT_EQ(openDescriptors(), before);
    }
}

TEST(ProcProcessLister, LetsGoOfWhatEnded) {
    ProcProcessLister lister;
    for (int round = 0; round < 3; ++round) {
        Pid pid = 0;
        {
            const Subject subject;
            pid = subject.pid();
            EXPECT_TRUE(find(lister.processes(), pid));
        }
        EXPECT_FALSE(find(lister.processes(), pid));
        for (const auto& entry : std::filesystem::directory_iterator{"/proc/self/fd"}) {
            std::error_code failed;
            const std::string target = std::filesystem::read_symlink(entry.path(), failed);
            EXPECT_NE(target, "/proc/" + std::to_string(pid) + "/stat");
        }
    }
}

TEST(ProcProcessLister, ParsesTheStatLineOfAnyName) {
    const std::string rest =
        " S 7 70 71 0 -1 4194560 1 0 0 0 150 25 0 0 20 0 1 0 195999 3133440 414 1844 1 2 140721532510256";
    for (const std::string name : {"cat", "a b", "x) R 1 (y", ")", "", "tmux: server", "line\nbreak"}) {
        const auto stat = ProcStat::parse("42 (" + name + ")" + rest);
        ASSERT_TRUE(stat) << name;
        EXPECT_EQ(stat->comm, name);
        EXPECT_EQ(stat->state, 'S');
        EXPECT_EQ(stat->pid, 42);
        EXPECT_EQ(stat->ppid, 7);
        EXPECT_EQ(stat->session, 71);
        EXPECT_EQ(stat->cpuTicks, 175U);
        EXPECT_EQ(stat->startTicks, 195999U);
        EXPECT_EQ(stat->rssPages, 414);
        EXPECT_FALSE(stat->kernelThread);
    }
    for (const std::string line :
         {"", "42", "42 (cat)", "42 (cat", "42 )cat( S 7", "x (cat) S 7 1 1", "42 (cat) S 7 70 71"}) {
        EXPECT_FALSE(ProcStat::parse(line)) << line;
    }
    EXPECT_TRUE(ProcStat::parse("3 (kworker) I 2 0 0 0 -1 2129984 0 0 0 0 0 0 0 0 20 0 1 0 9 0 0 18446744073709551615")
                    ->kernelThread);
}

TEST(ProcProcessLister, NamesTheUnit) {
    const std::string user = "0::/user.slice/user-1000.slice/";
    for (const auto& [cgroup, unit] : std::vector<std::pair<std::string, std::string_view>>{
             {user + "user@1000.service/app.slice/foo.service\n", "foo.service"},
             {user + "user@1000.service/app.slice/foo.service/payload\n", "foo.service"},
             {user + "user@1000.service/app.slice/app-gnome-code-1.scope\n", "app-gnome-code-1.scope"},
             {user + "session-3.scope", "session-3.scope"},
             {"9:name=systemd:/system.slice/cron.service\n8:pids:/\n0::/\n", "cron.service"},
             {"4:memory:/x.service\n0::/\n", ""},
             {"", ""},
             {"0::", ""}}) {
        EXPECT_EQ(ProcProcessLister::unitOf(cgroup), unit) << cgroup;
    }
}

TEST(ProcProcessLister, TellsWhatWasStartedToBeOnItsOwn) {
    // A service, also with helpers of its own; a shell's child in a terminal that is one; the desktop's applications.
    for (const auto& [unit, session, own] :
         std::vector<std::tuple<std::string_view, Pid, bool>>{{"dev-server.service", 1, true},
                                                              {"cron.service", 1, true},
                                                              {"app-konsole@1.service", 42, true},
                                                              {"app-konsole@1.service", 1, false},
                                                              {"ssh.service", 1, false},
                                                              {"app-gnome-code-42.scope", 1, true},
                                                              {"app-gnome-kitty-7.scope", 1, false},
                                                              {"vte-spawn-1-42.scope", 42, false},
                                                              {"session-42.scope", 42, false},
                                                              {"", 42, false}}) {
        EXPECT_EQ(ProcProcessLister::isUnitsOwn(unit, 42, session), own) << unit;
    }
    EXPECT_TRUE(ProcProcessLister::isContained("Name:\tnode\nNSpid:\t25400\t2\nNSpgid:\t1\t1\n"));
    EXPECT_FALSE(ProcProcessLister::isContained("Name:\tnode\nNSpid:\t25400\nNSpgid:\t1\t1\n"));
    EXPECT_FALSE(ProcProcessLister::isContained("Name:\tnode\n"));
}

TEST(ListeningSockets, KernelAndTableAgree) {
    const Subject subject;
    for (const auto& [family, path] : {std::pair{AF_INET, "/proc/net/tcp"}, std::pair{AF_INET6, "/proc/net/tcp6"}}) {
        const auto table = ListeningSockets::fromTable(path);
        ASSERT_TRUE(table);
        EXPECT_TRUE(std::ranges::any_of(*table, [&](const auto& entry) { return entry.second == subject.port(); }));
        // Some sandboxes refuse socket diagnostics; then the table is the only way.
        if (const auto kernel = ListeningSockets::fromNetlink(family)) {
            EXPECT_EQ(std::ranges::count_if(*kernel, [&](const auto& entry) { return entry.second == subject.port(); }),
                      1);
        }
    }
    EXPECT_FALSE(ListeningSockets::fromTable("/proc/net/none"));
}

TEST(ListeningSockets, SkipsDamagedLines) {
    const auto ports = ListeningSockets::parseTable(
        "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  timeout inode\n"
        "   0: 0100007F:0BB8 00000000:0000 0A 00000000:00000000 00:00000000 00000000  1000        0 4711 1 0 100 0 0 "
        "10 0\n"
        "   1: 0100007F:0BB9 0100007F:9999 01 00000000:00000000 00:00000000 00000000  1000        0 4712 1\n"
        "   2: 0100007F:0BBA 00000000:0000 0A 00000000:00000000 00:00000000\n"
        "   3: nonsense 00000000:0000 0A 0:0 0:0 0  1000        0 4713 1\n"
        "   4: 0100007F:0000 00000000:0000 0A 0:0 0:0 0  1000        0 4714 1\n");
    EXPECT_EQ(ports, (ListeningSockets::Ports{{4711, 3000}}));
}

} // namespace kippo
