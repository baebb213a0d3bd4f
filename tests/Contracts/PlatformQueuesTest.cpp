#include "Platform/Linux/PollScheduler.h"
#include "Platform/Posix/WorkerQueue.h"

#include <array>
#include <chrono>
#include <cmath>
#include <future>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <unistd.h>

namespace kippo {

using testing::ElementsAre;

struct PollSchedulerTest : testing::Test {
    PollScheduler scheduler;
    std::vector<std::string> log;

    std::function<void()> note(const std::string& word) {
        return [this, word] { log.push_back(word); };
    }
    /// Runs the loop until `delay` has passed.
    void runFor(Seconds delay) {
        const auto end = scheduler.after(delay, [this] { scheduler.stop(); });
        scheduler.run();
    }
};

TEST_F(PollSchedulerTest, RunsTimersInTheOrderOfTheirTimes) {
    const auto second = scheduler.after(Seconds{0.002}, note("second"));
    const auto first = scheduler.after(Seconds{-1}, note("first"));
    const auto odd = scheduler.after(Seconds{std::nan("")}, note("nan"));
    const auto never = scheduler.after(Seconds{INFINITY}, note("never"));
    auto dropped = scheduler.after(Seconds{0.001}, note("dropped"));
    dropped.cancel();
    runFor(Seconds{0.004});
    EXPECT_THAT(log, ElementsAre("first", "nan", "second"));
}

TEST_F(PollSchedulerTest, RepeatsUntilCancelledAlsoFromItsOwnWork) {
    int count = 0;
    Timer repeating;
    repeating = scheduler.every(Seconds{0.001}, Seconds{0}, [&] {
        log.push_back("tick");
        if (++count == 3) {
            repeating.cancel();
        }
    });
    runFor(Seconds{0.02});
    EXPECT_THAT(log, ElementsAre("tick", "tick", "tick"));
}

TEST_F(PollSchedulerTest, TolerantWorkWaitsToShareAWakeUp) {
    const auto start = std::chrono::steady_clock::now();
    std::chrono::steady_clock::duration waited{};
    const auto tolerant = scheduler.every(Seconds{0.001}, Seconds{10}, [&] {
        waited = std::chrono::steady_clock::now() - start;
        log.push_back("tolerant");
    });
    runFor(Seconds{0.015});
    EXPECT_THAT(log, ElementsAre("tolerant"));
    EXPECT_GE(waited, std::chrono::milliseconds{15});
}

TEST_F(PollSchedulerTest, CallsBackForReadableDescriptors) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    Subscription watching = scheduler.addDescriptor(ends[0], [&] {
        char byte = 0;
        log.push_back(read(ends[0], &byte, 1) == 1 ? std::string(1, byte) : "end");
        if (log.back() == "end") {
            watching.reset();
        }
    });
    ASSERT_EQ(write(ends[1], "ab", 2), 2);
    close(ends[1]);
    runFor(Seconds{0.02});
    EXPECT_THAT(log, ElementsAre("a", "b", "end"));
    close(ends[0]);
    // A descriptor that was closed without a word must not keep the loop spinning or stop it.
    const auto stale = scheduler.addDescriptor(ends[0], note("stale"));
    runFor(Seconds{0.001});
    EXPECT_EQ(log.size(), 3U);
}

TEST_F(PollSchedulerTest, HandlesMayOutliveIt) {
    Timer timer;
    Subscription subscription;
    {
        PollScheduler shortLived;
        timer = shortLived.after(Seconds{100}, [] {});
        subscription = shortLived.addDescriptor(0, [] {});
    }
    timer.cancel();
    subscription.reset();
}

TEST_F(PollSchedulerTest, WorkerQueueAnswersOnTheRunningThreadInOrder) {
    const auto main = std::this_thread::get_id();
    WorkerQueue queue{[this](std::function<void()> work) { scheduler.post(std::move(work)); }};
    std::vector<int> worked;
    for (int i = 0; i < 3; ++i) {
        queue.run(
            [&worked, main, i] {
                EXPECT_NE(std::this_thread::get_id(), main);
                worked.push_back(i);
            },
            [this, main, i] {
                EXPECT_EQ(std::this_thread::get_id(), main);
                log.push_back(std::to_string(i));
                if (i == 2) {
                    scheduler.stop();
                }
            });
    }
    scheduler.run();
    EXPECT_THAT(log, ElementsAre("0", "1", "2"));
    EXPECT_THAT(worked, ElementsAre(0, 1, 2));
}

TEST_F(PollSchedulerTest, ADestroyedWorkerQueueKeepsItsResultsToItself) {
    bool firstEnded = false;
    {
        WorkerQueue queue{[this](std::function<void()> work) { scheduler.post(std::move(work)); }};
        std::promise<void> started;
        queue.run(
            [&] {
                started.set_value();
                firstEnded = true;
            },
            note("first"));
        started.get_future().wait();
        queue.run([] {}, note("second"));
    }
    EXPECT_TRUE(firstEnded);
    runFor(Seconds{0});
    EXPECT_TRUE(log.empty());
}

} // namespace kippo
