#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace vantro {

inline constexpr std::string_view NSDefaultRunLoopMode = "kCFRunLoopDefaultMode";
inline constexpr std::string_view NSModalPanelRunLoopMode = "NSModalPanelRunLoopMode";
inline constexpr std::string_view NSEventTrackingRunLoopMode = "NSEventTrackingRunLoopMode";

// A scheduled timer. The run loop owns it until it is invalidated or, for a
// one-shot timer, until it has fired; holders keep it only to invalidate it.
class Timer {
public:
    virtual ~Timer() = default;
    virtual void invalidate() = 0;
    virtual bool isValid() const = 0;
};

// The main run loop, the main dispatch queue and a global queue. Every
// operation is called on the main thread, except dispatchAsyncMain and
// dispatchAsyncBackground, which any thread may call.
// Timers and delayed performs run only while the run loop runs in its default
// mode (not while a modal alert runs it); main-queue blocks run in the common
// modes, modal ones included. Work due at the same instant runs in the order
// it was scheduled.
class RunLoop {
public:
    RunLoop() = default;
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;
    virtual ~RunLoop() = default;

    // scheduledTimerWithTimeInterval:repeats:block: on the current run loop in
    // its default mode. The block runs on the main thread with the timer. An
    // interval of 0 fires on the next pass of the run loop.
    virtual std::shared_ptr<Timer> scheduledTimer(double interval, bool repeats, std::function<void(Timer&)> block) = 0;

    // performSelector:withObject:afterDelay: — `work` runs after `delay`
    // seconds in the default mode, keyed by (target, selector) so that it can
    // be cancelled. The caller decides in `work` what the perform holds.
    virtual void performAfterDelay(const void* target, std::string_view selector, double delay, std::function<void()> work) = 0;
    // cancelPreviousPerformRequestsWithTarget:selector:object: — drops every
    // pending perform of (target, selector). Cancelling nothing is harmless.
    virtual void cancelPreviousPerformRequests(const void* target, std::string_view selector) = 0;

    // dispatch_async on the main queue. Safe from any thread.
    virtual void dispatchAsyncMain(std::function<void()> work) = 0;
    // dispatch_async on a global queue: `work` runs soon on a thread other
    // than the main thread, which it may block (a system call that waits for
    // the user). What it hands back to the framework goes through
    // dispatchAsyncMain. Safe from any thread.
    virtual void dispatchAsyncBackground(std::function<void()> work) = 0;
    // dispatch_after on the main queue, `seconds` from now.
    virtual void dispatchAfterMain(double seconds, std::function<void()> work) = 0;

    // Whether the caller runs on the main thread.
    virtual bool isMainThread() const = 0;
    // The mode the run loop runs in now (the default mode between passes).
    virtual std::string currentMode() const = 0;
};

}  // namespace vantro
