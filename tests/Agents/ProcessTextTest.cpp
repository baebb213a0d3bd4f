#include "Agents/ProcessScanner.h"

#include <fstream>
#include <gmock/gmock.h>
#include <sstream>

namespace kippo {

using namespace ProcessScanner;
using testing::ElementsAre;
using testing::Pair;

TEST(ProcessText, ReadsElapsedTime) {
    constexpr std::pair<std::string_view, double> times[] = {{"05:07", 307},
                                                             {"01:00:00", 3600},
                                                             {"2-03:04:05", 183845},
                                                             {"1-00:00:00", 86400},
                                                             {"00:00", 0},
                                                             {"x-00:01", 1},
                                                             {"7", 7},
                                                             {"", 0},
                                                             {"-", 0}};
    for (const auto& [text, seconds] : times) {
        EXPECT_DOUBLE_EQ(parseElapsed(text), seconds) << text;
    }
}

TEST(ProcessText, ReadsTheTableAndSkipsWhatIsNone) {
    const auto rows = parsePs("    7     1  2048 12.5    01:00 node  /a b/server.js  --x \n"
                              "PID PPID RSS %CPU ELAPSED COMMAND\n"
                              "\n"
                              "8 1 2048 0.0 00:01\n"
                              "9 1 20x48 0.0 00:01 sh\n"
                              "0 1 1 0.0 00:01 sh\n"
                              "-5 1 1 0.0 00:01 sh\n"
                              "99999999999 1 1 0.0 00:01 sh\n"
                              "10 1 1 nan 00:01 sh\n"
                              "11 1 1 0.0 soon sh\n"
                              "12 7 0 0.0 1-00:00:00 [gone] <defunct>\n"
                              "13 7 1 101 00:09 caf\xE9\n"
                              "15 1 100 0.0 213503982334-14:25:51 vite\n"
                              "14 7 1 0.");
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[0], (ProcInfo{.pid = 7,
                                 .ppid = 1,
                                 .rssKB = 2048,
                                 .cpu = 12.5,
                                 .uptime = 60,
                                 .command = "node  /a b/server.js  --x",
                                 .adopted = true}));
    EXPECT_EQ(rows[1].uptime, 86400);
    EXPECT_FALSE(rows[1].adopted);
    EXPECT_EQ(rows[2].command, "caf\uFFFD");
    EXPECT_EQ(rows[3].uptime, 0) << "an age that wrapped round is none";
}

TEST(ProcessText, ReadsListeners) {
    EXPECT_THAT(parseListeners("p101\nf5\nn127.0.0.1:3000\nf6\nn[::1]:3000\nn*:9229\n"
                               "pnone\nn*:1\np102\nn*:http\nn*\nn:70000\nn*:0\np103\nn[::]:8080\n"),
                ElementsAre(Pair(101, ElementsAre(3000, 9229)), Pair(103, ElementsAre(8080))));
    EXPECT_TRUE(parseListeners("n*:80\n").empty());
}

TEST(ProcessText, ReadsWorkingFolders) {
    EXPECT_THAT(parseWorkingDirectories("p101\nfcwd\nn/home/dev/a b\np102\nfcwd\n"
                                        "n/proc/102/cwd (readlink: Permission denied)\nn\np103\nnrelative\np104\nn/\n"),
                ElementsAre(Pair(101, "/home/dev/a b"), Pair(104, "/")));
}

} // namespace kippo
