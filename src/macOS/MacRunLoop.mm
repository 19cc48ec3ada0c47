// RunLoop on the real Mac.
//
// Implements: timers scheduled on the calling thread's run loop in its default
// mode (NSTimer with a target, which every release from 10.9 has); delayed
// performs (performSelector:withObject:afterDelay:, default mode) keyed by the
// caller's target and selector, each key with a perform target of its own so
// that cancelPreviousPerformRequestsWithTarget: drops exactly that key's
// requests, and kept only while it has performs pending; the main queue and
// the default global queue through libdispatch (async and after); the main
// thread and the current run-loop mode; the NSTimer behind a timer
// (MacRunLoop.h).
// Known gaps: none.

#import <Foundation/Foundation.h>

#include <dispatch/dispatch.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "macOS/MacAreas.h"
#include "macOS/MacFoundation.h"
#include "macOS/MacRunLoop.h"

namespace vantro::mac {
class MacTimer;
}

// Fires a timer's block. The timer retains its target until it is
// invalidated, so the block lives exactly as long as the timer is scheduled.
@interface VantroTimerTarget : NSObject
- (instancetype)initWithTimer:(std::shared_ptr<vantro::mac::MacTimer>)timer
                        block:(std::function<void(vantro::Timer&)>)block;
- (void)fire:(NSTimer*)timer;
@end

// Runs the work of a delayed perform. One object per (target, selector) of
// the caller: cancelling its requests cancels that key's and no other's.
@interface VantroPerformTarget : NSObject
// Performs asked for and neither run nor cancelled yet.
@property (nonatomic) NSUInteger pending;
- (void)perform:(id)work;
@end

// The work of one delayed perform, passed as the perform's object.
@interface VantroPerformWork : NSObject
- (instancetype)initWithWork:(std::function<void()>)work;
- (void)run;
@end

namespace vantro::mac {

class MacTimer final : public Timer {
public:
    void invalidate() override { [timer_ invalidate]; }
    bool isValid() const override { return timer_ && timer_.valid; }
    void setTimer(NSTimer* timer) { timer_ = timer; }
    NSTimer* timer() const { return timer_; }

private:
    // The run loop owns the timer; this only refers to it.
    __weak NSTimer* timer_ = nil;
};

}  // namespace vantro::mac

@implementation VantroTimerTarget {
    std::shared_ptr<vantro::mac::MacTimer> _timer;
    std::function<void(vantro::Timer&)> _block;
}

- (instancetype)initWithTimer:(std::shared_ptr<vantro::mac::MacTimer>)timer
                        block:(std::function<void(vantro::Timer&)>)block {
    if ((self = [super init])) {
        _timer = std::move(timer);
        _block = std::move(block);
    }
    return self;
}

- (void)fire:(NSTimer*)timer {
    (void)timer;
    // The block may drop the last other reference to the timer.
    auto keep = _timer;
    if (_block) _block(*keep);
}

@end

@implementation VantroPerformTarget

- (void)perform:(id)work {
    if (self.pending > 0) --self.pending;
    [(VantroPerformWork*)work run];
}

@end

@implementation VantroPerformWork {
    std::function<void()> _work;
}

- (instancetype)initWithWork:(std::function<void()>)work {
    if ((self = [super init])) _work = std::move(work);
    return self;
}

- (void)run {
    if (_work) _work();
}

@end

namespace vantro::mac {

namespace {

class MacRunLoop final : public RunLoop {
public:
    std::shared_ptr<Timer> scheduledTimer(double interval, bool repeats, std::function<void(Timer&)> block) override {
        auto timer = std::make_shared<MacTimer>();
        VantroTimerTarget* target = [[VantroTimerTarget alloc] initWithTimer:timer block:std::move(block)];
        timer->setTimer([NSTimer scheduledTimerWithTimeInterval:interval
                                                         target:target
                                                       selector:@selector(fire:)
                                                       userInfo:nil
                                                        repeats:repeats]);
        return timer;
    }

    void performAfterDelay(const void* target, std::string_view selector, double delay, std::function<void()> work) override {
        VantroPerformWork* box = [[VantroPerformWork alloc] initWithWork:std::move(work)];
        VantroPerformTarget* performer = performTarget(target, selector);
        ++performer.pending;
        [performer performSelector:@selector(perform:) withObject:box afterDelay:delay];
    }

    void cancelPreviousPerformRequests(const void* target, std::string_view selector) override {
        auto found = performTargets_.find({target, std::string(selector)});
        if (found == performTargets_.end()) return;
        [NSObject cancelPreviousPerformRequestsWithTarget:found->second];
        found->second.pending = 0;
    }

    void dispatchAsyncMain(std::function<void()> work) override {
        dispatch_async(dispatch_get_main_queue(), ^{
          work();
        });
    }

    void dispatchAsyncBackground(std::function<void()> work) override {
        dispatch_async(dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_DEFAULT, 0), ^{
          work();
        });
    }

    void dispatchAfterMain(double seconds, std::function<void()> work) override {
        dispatch_after(dispatch_time(DISPATCH_TIME_NOW, static_cast<int64_t>(seconds * NSEC_PER_SEC)), dispatch_get_main_queue(),
                       ^{
                         work();
                       });
    }

    bool isMainThread() const override { return NSThread.isMainThread; }

    std::string currentMode() const override {
        // Between passes the run loop has no current mode; the contract calls
        // that the default mode.
        NSString* mode = NSRunLoop.currentRunLoop.currentMode;
        return toString(mode ? mode : static_cast<NSString*>(::NSDefaultRunLoopMode));
    }

private:
    VantroPerformTarget* performTarget(const void* target, std::string_view selector) {
        // A key with nothing pending is dropped: its caller may be gone, and
        // another object at the same address starts afresh.
        std::erase_if(performTargets_, [](const auto& entry) { return entry.second.pending == 0; });
        auto& slot = performTargets_[{target, std::string(selector)}];
        if (!slot) slot = [[VantroPerformTarget alloc] init];
        return slot;
    }

    // Main thread only, like delayed performs themselves.
    std::map<std::pair<const void*, std::string>, VantroPerformTarget*> performTargets_;
};

}  // namespace

std::unique_ptr<RunLoop> makeRunLoop() { return std::make_unique<MacRunLoop>(); }

NSTimer* _Nullable nsTimer(const std::shared_ptr<Timer>& timer) {
    auto* macTimer = dynamic_cast<MacTimer*>(timer.get());
    return macTimer ? macTimer->timer() : nil;
}

}  // namespace vantro::mac
