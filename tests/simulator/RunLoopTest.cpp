#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {
namespace {

TEST(SimRunLoop, WorkDueAtOneInstantRunsInSchedulingOrder) {
    SimRunLoop loop;
    std::vector<std::string> order;
    loop.scheduledTimer(0.5, false, [&](Timer&) { order.push_back("timer A"); });
    loop.performAfterDelay(nullptr, "perform", 0.5, [&] { order.push_back("perform"); });
    loop.dispatchAfterMain(0.5, [&] { order.push_back("main queue"); });
    loop.scheduledTimer(0.5, false, [&](Timer&) { order.push_back("timer B"); });
    loop.scheduledTimer(0.2, false, [&](Timer&) { order.push_back("earlier"); });
    loop.runFor(1.0);
    EXPECT_EQ(order, (std::vector<std::string>{"earlier", "timer A", "perform", "main queue", "timer B"}));
    EXPECT_DOUBLE_EQ(loop.now(), 1.0);
}

TEST(SimRunLoop, AZeroIntervalTimerFiresOnTheNextPassNotThisOne) {
    SimRunLoop loop;
    int fired = 0;
    loop.dispatchAsyncMain([&] { loop.scheduledTimer(0, false, [&](Timer&) { ++fired; }); });
    EXPECT_EQ(loop.runOnePass(), 1u);
    EXPECT_EQ(fired, 0);
    loop.runOnePass();
    EXPECT_EQ(fired, 1);
    EXPECT_DOUBLE_EQ(loop.now(), 0.0);
}

// Which of the main thread's own work runs in which mode is the run loop's
// contract (tests/platform/contract); work from outside that loop is the
// simulated Mac's own: it runs in every mode, common or not.
TEST(SimRunLoop, SystemQueuesAndTheUserActInEveryMode) {
    SimRunLoop loop;
    std::vector<std::string> ran;
    loop.dispatchAsyncMain([&] { ran.push_back("main queue"); });
    loop.dispatchOnSystemQueue(0.1, [&] { ran.push_back(loop.isMainThread() ? "system on main" : "system"); });
    bool done = false;
    loop.scheduleUserEvent(1.0, [&] {
        ran.push_back("user");
        done = true;
    });
    EXPECT_TRUE(loop.runModeUntil("com.example.PrivateMode", [&] { return done; }, 10));
    EXPECT_EQ(ran, (std::vector<std::string>{"system", "user"}));
    EXPECT_DOUBLE_EQ(loop.now(), 1.0);
    loop.runOnePass();
    EXPECT_EQ(ran, (std::vector<std::string>{"system", "user", "main queue"}));
}

TEST(SimRunLoop, SystemQueueWorkRunsOnAThreadOfItsOwnAndHandsBackToMain) {
    SimRunLoop loop;
    const auto main = std::this_thread::get_id();
    std::vector<std::string> order;
    std::thread::id queueThread;
    bool queueSawMain = true;
    loop.dispatchOnSystemQueue(0.5, [&] {
        queueThread = std::this_thread::get_id();
        queueSawMain = loop.isMainThread();
        order.push_back("system queue");
        loop.dispatchAsyncMain([&] {
            order.push_back(std::this_thread::get_id() == main && loop.isMainThread() ? "main, on main" : "main, elsewhere");
        });
    });
    loop.dispatchAfterMain(0.5, [&] { order.push_back("main queue, due with it"); });
    loop.runFor(1.0);
    EXPECT_NE(queueThread, std::thread::id());
    EXPECT_NE(queueThread, main);
    EXPECT_FALSE(queueSawMain);
    // The hop to main waits for the next pass, after work already due.
    EXPECT_EQ(order, (std::vector<std::string>{"system queue", "main queue, due with it", "main, on main"}));
}

TEST(SimRunLoop, OtherThreadsPostToTheMainQueueSafelyAndInTheirOrder) {
    SimRunLoop loop;
    constexpr int threads = 4, posts = 200;
    std::vector<std::vector<int>> seen(threads);
    std::atomic<int> ran = 0;
    std::vector<std::thread> posters;
    for (int t = 0; t < threads; ++t)
        posters.emplace_back([&, t] {
            for (int i = 0; i < posts; ++i)
                loop.dispatchAsyncMain([&, t, i] {
                    seen[static_cast<std::size_t>(t)].push_back(i);
                    ++ran;
                });
        });
    // The main thread runs its loop meanwhile; every post arrives.
    while (ran.load() < threads * posts) loop.runOnePass();
    for (auto& poster : posters) poster.join();
    loop.runOnePass();
    EXPECT_EQ(loop.pendingCount(), 0u);
    for (const auto& one : seen) {
        ASSERT_EQ(one.size(), static_cast<std::size_t>(posts));
        EXPECT_TRUE(std::is_sorted(one.begin(), one.end()));
    }
}

TEST(SimRunLoop, ATimerDoesNotFireWhileAModalAlertRunsTheLoop) {
    SimulatedMac mac;
    auto& loop = mac.runLoop();
    double firedAt = -1;
    loop.scheduledTimer(0.5, false, [&](Timer&) { firedAt = loop.now(); });
    mac.alerts().answerNext(0, 2.0);
    loop.dispatchAsyncMain([&] { mac.alerts().runModal({AlertStyle::Warning, "Title", "Text", {"OK"}}); });
    mac.runFor(5);
    EXPECT_DOUBLE_EQ(firedAt, 2.0);  // due at 0.5, held until the alert was answered at 2.0
    ASSERT_EQ(mac.alerts().shown().size(), 1u);
    EXPECT_EQ(mac.alerts().shown()[0].response, NSAlertFirstButtonReturn);
}

TEST(SimRunLoop, RunUntilIdleIgnoresRepeatingTimersButNotSelfRenewingWork) {
    SimRunLoop loop;
    int ticks = 0;
    loop.scheduledTimer(1.0, true, [&](Timer&) { ++ticks; });
    loop.performAfterDelay(nullptr, "once", 2.5, [] {});
    EXPECT_TRUE(loop.runUntilIdle());
    EXPECT_DOUBLE_EQ(loop.now(), 2.5);
    EXPECT_EQ(ticks, 2);

    std::function<void()> renew = [&] { loop.performAfterDelay(nullptr, "retry", 0.5, renew); };
    renew();
    EXPECT_FALSE(loop.runUntilIdle(10));
    EXPECT_DOUBLE_EQ(loop.now(), 12.5);
}

TEST(SimAlerts, UnansweredAlertsAreGivenUpAndDefaultAnswersPressTheLastButton) {
    SimulatedMac mac;
    EXPECT_EQ(mac.alerts().runModal({AlertStyle::Warning, "A", "", {"Open", "Cancel"}}), NSAlertSecondButtonReturn);
    mac.alerts().answerNext(std::nullopt);
    EXPECT_EQ(mac.alerts().runModal({AlertStyle::Warning, "B", "", {"Open", "Cancel"}}), NSModalResponseAbort);
    EXPECT_TRUE(mac.timeline().contains("given up"));
}

}  // namespace
}  // namespace vantro::sim
