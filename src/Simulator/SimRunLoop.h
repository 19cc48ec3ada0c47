#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Platform/RunLoop.h"

namespace vantro::sim {

// The simulated main run loop, main queue and system queues on a virtual
// clock. Nothing sleeps: running the loop jumps the clock to the next piece of
// due work. Work due at the same instant runs in the order it was scheduled.
//
// Which work may run depends on the mode the loop runs in: timers and delayed
// performs only in the default mode; main-queue blocks in the common modes
// (default, modal panel, event tracking); system-queue work and the user's
// actions in every mode, since they come from outside the main thread's loop.
class SimRunLoop : public RunLoop {
public:
    SimRunLoop() = default;

    // RunLoop
    std::shared_ptr<Timer> scheduledTimer(double interval, bool repeats, std::function<void(Timer&)> block) override;
    void performAfterDelay(const void* target, std::string_view selector, double delay, std::function<void()> work) override;
    void cancelPreviousPerformRequests(const void* target, std::string_view selector) override;
    // Safe from any thread, as the main queue is: work from a thread other
    // than the loop's own waits in an inbox that the loop empties, in order,
    // at its next pass.
    void dispatchAsyncMain(std::function<void()> work) override;
    void dispatchAfterMain(double seconds, std::function<void()> work) override;
    // A global queue's work runs as the system's queues' does (below), now.
    void dispatchAsyncBackground(std::function<void()> work) override;
    // The main thread is the one that made the loop.
    bool isMainThread() const override { return std::this_thread::get_id() == mainThread_; }
    std::string currentMode() const override { return mode_; }

    // Work of the system on a queue of its own (answers of EventKit, Contacts,
    // Photos), `delay` seconds from now. It runs on a thread of its own, as
    // the system's queues do, while the main thread waits for it: the story
    // stays deterministic, and what the work touches crosses threads as it
    // does on a Mac.
    void dispatchOnSystemQueue(double delay, std::function<void()> work);
    // Something the user does, `delay` seconds from now, in whatever mode.
    void scheduleUserEvent(double delay, std::function<void()> work);

    double now() const { return now_; }

    // Runs, in `mode`, the work that is due now and was scheduled before the
    // pass began; work scheduled during the pass waits for the next one.
    // Returns how many pieces of work ran.
    std::size_t runOnePass(std::string_view mode = NSDefaultRunLoopMode);
    // Runs the default mode for `seconds` of virtual time; the clock ends at
    // now + seconds.
    void runFor(double seconds);
    // Runs the default mode until nothing is pending but repeating timers, or
    // `limit` seconds have passed (self-renewing work never goes idle).
    // Returns true when it went idle.
    bool runUntilIdle(double limit = 120.0);
    // Runs `mode` until `done` answers true or `timeout` seconds have passed.
    // Returns whether `done` was met. Used for modal sessions.
    bool runModeUntil(std::string_view mode, const std::function<bool()>& done, double timeout);

    // Drops every pending piece of work, with whatever it holds: the process
    // is ending.
    void discardPendingWork();
    // Drops the main thread's pending work (timers, delayed performs, the
    // main queue) and keeps what happens outside the process (the user, the
    // system's queues): the host quits while the Mac goes on.
    void discardMainThreadWork();

    // Pending work of each kind, for tests.
    std::size_t pendingTimers() const;
    std::size_t pendingPerforms(const void* target, std::string_view selector) const;
    std::size_t pendingCount() const;

private:
    enum class Kind { Timer, Perform, MainQueue, SystemQueue, UserEvent };
    class SimTimer;
    struct Item {
        Kind kind;
        std::shared_ptr<SimTimer> timer;
        const void* target = nullptr;
        std::string selector;
        std::function<void()> work;
    };
    using Key = std::pair<double, std::uint64_t>;

    void schedule(double due, Item item);
    static bool runsIn(Kind kind, std::string_view mode);
    // The earliest item that may run in `mode`, or items_.end().
    std::map<Key, Item>::iterator nextRunnable(std::string_view mode, bool excludeRepeatingTimers = false);
    void runItem(Key key, Item item);
    bool advanceTo(double limit, std::string_view mode);
    // Whether the calling thread is the loop's own: the main thread, or the
    // system-queue thread the main thread is waiting for.
    bool ownsLoop() const;
    // Schedules the inbox's work on the main queue, in the order it came.
    void takeInbox();

    double now_ = 0;
    std::uint64_t nextSequence_ = 0;
    std::map<Key, Item> items_;
    std::string mode_{NSDefaultRunLoopMode};
    std::thread::id mainThread_ = std::this_thread::get_id();
    std::atomic<std::thread::id> systemQueueThread_{};
    mutable std::mutex inboxMutex_;
    std::vector<std::function<void()>> inbox_;
};

}  // namespace vantro::sim
