#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/PlatformUnderTest.h"

namespace vantro::test {
namespace {

// The main run loop's contract: timers, delayed performs and the main queue,
// which modes each runs in, and the order of work that is due together.
// Nothing here depends on how long anything takes: "run the loop a little"
// is always followed by a statement of what has run, never of when.
class RunLoopContract : public ::testing::Test {
protected:
    static std::vector<std::string> sorted(std::vector<std::string> v) {
        std::sort(v.begin(), v.end());
        return v;
    }

    std::unique_ptr<PlatformUnderTest> put = makePlatformUnderTest();
    RunLoop& loop = put->platform().runLoop();
};

TEST_F(RunLoopContract, AZeroSecondTimerFiresAfterTheWorkThatScheduledIt) {
    int fired = 0;
    auto timer = loop.scheduledTimer(0, false, [&](Timer&) { ++fired; });
    EXPECT_EQ(fired, 0) << "the timer fired during the call that scheduled it";
    EXPECT_TRUE(timer->isValid());
    ASSERT_TRUE(put->runMainLoopUntil([&] { return fired > 0; }));
    put->runMainLoop(0.05);
    EXPECT_EQ(fired, 1) << "a one-shot timer fires once";
    EXPECT_FALSE(timer->isValid()) << "a one-shot timer is invalid once it has fired";

    // Scheduled from work the loop runs, it waits for that work to end.
    std::vector<std::string> order;
    loop.dispatchAsyncMain([&] {
        loop.scheduledTimer(0, false, [&](Timer&) { order.push_back("timer"); });
        order.push_back("block ends");
    });
    ASSERT_TRUE(put->runMainLoopUntil([&] { return order.size() == 2; }));
    EXPECT_EQ(order, (std::vector<std::string>{"block ends", "timer"}));
}

TEST_F(RunLoopContract, TheRunLoopKeepsTimersUntilTheyAreDone) {
    // Nobody keeps these handles: the run loop does.
    int oneShot = 0, repeating = 0;
    loop.scheduledTimer(0, false, [&](Timer&) { ++oneShot; });
    loop.scheduledTimer(0.01, true, [&](Timer& timer) {
        if (++repeating == 2) timer.invalidate();
    });
    ASSERT_TRUE(put->runMainLoopUntil([&] { return oneShot == 1 && repeating == 2; }));
    put->runMainLoop(0.05);
    EXPECT_EQ(oneShot, 1);
    EXPECT_EQ(repeating, 2);
}

TEST_F(RunLoopContract, RepeatingTimersFireUntilInvalidated) {
    std::vector<bool> validWhileFiring;
    std::shared_ptr<Timer> handle;
    handle = loop.scheduledTimer(0.01, true, [&](Timer& timer) {
        validWhileFiring.push_back(handle->isValid());
        // The timer the block is given is the one to invalidate.
        if (validWhileFiring.size() == 3) timer.invalidate();
    });
    ASSERT_TRUE(put->runMainLoopUntil([&] { return validWhileFiring.size() >= 3; }));
    put->runMainLoop(0.05);
    EXPECT_EQ(validWhileFiring, (std::vector<bool>{true, true, true}));
    EXPECT_FALSE(handle->isValid());

    // Invalidated before it is due, a timer never fires; invalidating again is
    // harmless.
    int fired = 0;
    auto early = loop.scheduledTimer(0, false, [&](Timer&) { ++fired; });
    early->invalidate();
    early->invalidate();
    EXPECT_FALSE(early->isValid());
    put->runMainLoop(0.05);
    EXPECT_EQ(fired, 0);

    // Work due together sees the invalidation of a timer that has not fired yet.
    std::shared_ptr<Timer> second;
    std::vector<std::string> ran;
    loop.scheduledTimer(0, false, [&](Timer&) {
        ran.push_back("first");
        second->invalidate();
    });
    second = loop.scheduledTimer(0, false, [&](Timer&) { ran.push_back("second"); });
    ASSERT_TRUE(put->runMainLoopUntil([&] { return !ran.empty(); }));
    put->runMainLoop(0.05);
    EXPECT_EQ(ran, (std::vector<std::string>{"first"}));
}

TEST_F(RunLoopContract, TimersAndDelayedPerformsWaitWhileTheLoopRunsModally) {
    int target = 0;
    std::vector<std::string> ran;
    std::string modeOfMainQueue;
    loop.scheduledTimer(0, false, [&](Timer&) { ran.push_back("timer"); });
    loop.performAfterDelay(&target, "perform", 0, [&] { ran.push_back("perform"); });
    loop.dispatchAsyncMain([&] {
        ran.push_back("main queue");
        modeOfMainQueue = loop.currentMode();
    });
    loop.dispatchAfterMain(0, [&] { ran.push_back("main queue after"); });
    EXPECT_TRUE(ran.empty()) << "none of them runs during the call that scheduled it";

    ASSERT_TRUE(put->runMainLoopUntil([&] { return ran.size() >= 2; }, 2.0, NSModalPanelRunLoopMode));
    put->runMainLoop(0.05, NSModalPanelRunLoopMode);
    EXPECT_EQ(sorted(ran), (std::vector<std::string>{"main queue", "main queue after"}));
    EXPECT_EQ(modeOfMainQueue, NSModalPanelRunLoopMode);
    EXPECT_EQ(loop.currentMode(), NSDefaultRunLoopMode) << "between runs the loop reads as in its default mode";

    ASSERT_TRUE(put->runMainLoopUntil([&] { return ran.size() >= 4; }));
    EXPECT_EQ(sorted({ran.begin() + 2, ran.end()}), (std::vector<std::string>{"perform", "timer"}));
}

TEST_F(RunLoopContract, MainQueueBlocksRunInEveryCommonMode) {
    for (auto mode : {NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode}) {
        std::optional<std::string> seen;
        loop.dispatchAsyncMain([&] { seen = loop.currentMode(); });
        ASSERT_TRUE(put->runMainLoopUntil([&] { return seen.has_value(); }, 2.0, mode)) << mode;
        EXPECT_EQ(*seen, mode);
    }
}

TEST_F(RunLoopContract, CancellingDropsEveryPendingPerformOfThatTargetAndSelectorOnly) {
    int targetA = 0, targetB = 0;
    int a = 0, other = 0, b = 0;
    bool done = false;
    loop.performAfterDelay(&targetA, "update", 0, [&] { a += 1; });
    loop.performAfterDelay(&targetA, "update", 0.01, [&] { a += 1; });
    loop.performAfterDelay(&targetA, "other", 0, [&] { ++other; });
    loop.performAfterDelay(&targetB, "update", 0, [&] { ++b; });
    loop.cancelPreviousPerformRequests(&targetA, "update");
    loop.cancelPreviousPerformRequests(&targetA, "never scheduled");
    loop.cancelPreviousPerformRequests(&targetB, "other");
    // Cancelling drops what is pending, not what comes after it.
    loop.performAfterDelay(&targetA, "update", 0.01, [&] { a += 10; });
    loop.performAfterDelay(&targetB, "last", 0.02, [&] { done = true; });
    ASSERT_TRUE(put->runMainLoopUntil([&] { return done; }));
    EXPECT_EQ(a, 10);
    EXPECT_EQ(other, 1);
    EXPECT_EQ(b, 1);

    // Work that is already due is still dropped: a perform that cancels its
    // own pair stops the next one of that pair due at the same time.
    std::vector<std::string> ran;
    loop.performAfterDelay(&targetA, "tick", 0, [&] {
        ran.push_back("first tick");
        loop.cancelPreviousPerformRequests(&targetA, "tick");
    });
    loop.performAfterDelay(&targetA, "tick", 0, [&] { ran.push_back("second tick"); });
    loop.performAfterDelay(&targetB, "tick", 0, [&] { ran.push_back("other target"); });
    ASSERT_TRUE(put->runMainLoopUntil([&] { return ran.size() >= 2; }));
    put->runMainLoop(0.05);
    EXPECT_EQ(ran, (std::vector<std::string>{"first tick", "other target"}));
}

TEST_F(RunLoopContract, WorkOfOneKindDueTogetherRunsInTheOrderItWasScheduled) {
    int targets[3] = {};
    struct Kind {
        const char* name;
        std::function<void(int index, std::function<void()> work)> schedule;
    } kinds[] = {
        {"main queue", [&](int, std::function<void()> work) { loop.dispatchAsyncMain(std::move(work)); }},
        {"timers", [&](int, std::function<void()> work) {
             loop.scheduledTimer(0, false, [work = std::move(work)](Timer&) { work(); });
         }},
        {"performs", [&](int index, std::function<void()> work) {
             loop.performAfterDelay(&targets[index], "run", 0, std::move(work));
         }},
    };
    for (const auto& kind : kinds) {
        std::vector<int> order;
        for (int i = 0; i < 3; ++i) kind.schedule(i, [&order, i] { order.push_back(i); });
        ASSERT_TRUE(put->runMainLoopUntil([&] { return order.size() == 3; })) << kind.name;
        EXPECT_EQ(order, (std::vector<int>{0, 1, 2})) << kind.name;
    }

    // A main-queue block queued by a running one goes behind those already
    // waiting.
    std::vector<std::string> order;
    loop.dispatchAsyncMain([&] {
        order.push_back("A");
        loop.dispatchAsyncMain([&] { order.push_back("A's own"); });
    });
    loop.dispatchAsyncMain([&] { order.push_back("B"); });
    ASSERT_TRUE(put->runMainLoopUntil([&] { return order.size() == 3; }));
    EXPECT_EQ(order, (std::vector<std::string>{"A", "B", "A's own"}));
}

TEST_F(RunLoopContract, BlocksDispatchedFromAnotherThreadArriveOnTheMainThread) {
    EXPECT_TRUE(loop.isMainThread());
    const auto mainThread = std::this_thread::get_id();
    bool askedOffMain = true;
    bool arrived = false, arrivedOnMain = false;
    std::thread::id arrivedThread;
    // The other thread has dispatched before the loop runs again, so that what
    // runs when is the same on every run.
    std::thread other([&] {
        askedOffMain = loop.isMainThread();
        loop.dispatchAsyncMain([&] {
            arrived = true;
            arrivedOnMain = loop.isMainThread();
            arrivedThread = std::this_thread::get_id();
        });
    });
    other.join();
    EXPECT_FALSE(askedOffMain) << "another thread is not the main thread";
    ASSERT_TRUE(put->runMainLoopUntil([&] { return arrived; }));
    EXPECT_TRUE(arrivedOnMain);
    EXPECT_EQ(arrivedThread, mainThread);
}

}  // namespace
}  // namespace vantro::test
