#include "Simulator/SimRunLoop.h"

#include <algorithm>

namespace vantro::sim {

class SimRunLoop::SimTimer : public Timer {
public:
    SimTimer(double interval, bool repeats, std::function<void(Timer&)> block)
        : interval(interval), repeats(repeats), block(std::move(block)) {}
    void invalidate() override {
        valid = false;
        block = nullptr;  // an invalidated timer lets go of what its block holds at once
    }
    bool isValid() const override { return valid; }

    double interval;
    bool repeats;
    std::function<void(Timer&)> block;
    bool valid = true;
};

namespace {
// The shortest interval a repeating timer may have, as on the platform.
constexpr double minimumRepeatInterval = 0.0001;
// A guard against work that re-posts itself at the same instant forever.
constexpr std::size_t maximumPassesPerInstant = 100000;
}  // namespace

void SimRunLoop::schedule(double due, Item item) { items_.emplace(Key{due, nextSequence_++}, std::move(item)); }

std::shared_ptr<Timer> SimRunLoop::scheduledTimer(double interval, bool repeats, std::function<void(Timer&)> block) {
    auto timer = std::make_shared<SimTimer>(std::max(0.0, interval), repeats, std::move(block));
    schedule(now_ + timer->interval, Item{Kind::Timer, timer, nullptr, {}, {}});
    return timer;
}

void SimRunLoop::performAfterDelay(const void* target, std::string_view selector, double delay, std::function<void()> work) {
    schedule(now_ + std::max(0.0, delay), Item{Kind::Perform, nullptr, target, std::string(selector), std::move(work)});
}

void SimRunLoop::cancelPreviousPerformRequests(const void* target, std::string_view selector) {
    std::erase_if(items_, [&](const auto& entry) {
        const Item& item = entry.second;
        return item.kind == Kind::Perform && item.target == target && item.selector == selector;
    });
}

void SimRunLoop::dispatchAsyncMain(std::function<void()> work) {
    if (ownsLoop()) {
        schedule(now_, Item{Kind::MainQueue, nullptr, nullptr, {}, std::move(work)});
        return;
    }
    std::lock_guard lock(inboxMutex_);
    inbox_.push_back(std::move(work));
}

bool SimRunLoop::ownsLoop() const {
    const auto self = std::this_thread::get_id();
    return self == mainThread_ || self == systemQueueThread_.load();
}

void SimRunLoop::takeInbox() {
    std::vector<std::function<void()>> arrived;
    {
        std::lock_guard lock(inboxMutex_);
        arrived.swap(inbox_);
    }
    for (auto& work : arrived) schedule(now_, Item{Kind::MainQueue, nullptr, nullptr, {}, std::move(work)});
}

std::size_t SimRunLoop::pendingCount() const {
    std::lock_guard lock(inboxMutex_);
    return items_.size() + inbox_.size();
}

void SimRunLoop::dispatchAfterMain(double seconds, std::function<void()> work) {
    schedule(now_ + std::max(0.0, seconds), Item{Kind::MainQueue, nullptr, nullptr, {}, std::move(work)});
}

void SimRunLoop::dispatchOnSystemQueue(double delay, std::function<void()> work) {
    schedule(now_ + std::max(0.0, delay), Item{Kind::SystemQueue, nullptr, nullptr, {}, std::move(work)});
}

void SimRunLoop::dispatchAsyncBackground(std::function<void()> work) {
    // From a thread other than the loop's own, the work waits in the inbox
    // like main-queue work does, and is sent on from there.
    if (!ownsLoop()) {
        dispatchAsyncMain([this, work = std::move(work)]() mutable { dispatchOnSystemQueue(0, std::move(work)); });
        return;
    }
    dispatchOnSystemQueue(0, std::move(work));
}

void SimRunLoop::scheduleUserEvent(double delay, std::function<void()> work) {
    schedule(now_ + std::max(0.0, delay), Item{Kind::UserEvent, nullptr, nullptr, {}, std::move(work)});
}

bool SimRunLoop::runsIn(Kind kind, std::string_view mode) {
    switch (kind) {
    case Kind::Timer:
    case Kind::Perform: return mode == NSDefaultRunLoopMode;
    case Kind::MainQueue:
        return mode == NSDefaultRunLoopMode || mode == NSModalPanelRunLoopMode || mode == NSEventTrackingRunLoopMode;
    case Kind::SystemQueue:
    case Kind::UserEvent: return true;
    }
    return false;
}

std::map<SimRunLoop::Key, SimRunLoop::Item>::iterator SimRunLoop::nextRunnable(std::string_view mode,
                                                                              bool excludeRepeatingTimers) {
    takeInbox();
    for (auto it = items_.begin(); it != items_.end(); ++it) {
        const Item& item = it->second;
        if (item.kind == Kind::Timer && !item.timer->valid) continue;
        if (excludeRepeatingTimers && item.kind == Kind::Timer && item.timer->repeats) continue;
        if (runsIn(item.kind, mode)) return it;
    }
    return items_.end();
}

void SimRunLoop::runItem(Key key, Item item) {
    switch (item.kind) {
    case Kind::Timer: {
        auto timer = item.timer;
        if (!timer->valid) return;
        if (timer->repeats) {
            double next = key.first + std::max(timer->interval, minimumRepeatInterval);
            schedule(std::max(next, now_), Item{Kind::Timer, timer, nullptr, {}, {}});
        }
        auto block = timer->block;  // the block may invalidate its own timer
        if (!timer->repeats) timer->valid = false;
        if (block) block(*timer);
        if (!timer->repeats) timer->block = nullptr;
        return;
    }
    case Kind::SystemQueue: {
        std::thread queue([this, work = std::move(item.work)] {
            systemQueueThread_ = std::this_thread::get_id();
            work();
            systemQueueThread_ = std::thread::id();
        });
        queue.join();
        return;
    }
    default: item.work(); return;
    }
}

std::size_t SimRunLoop::runOnePass(std::string_view mode) {
    std::string previousMode = mode_;
    mode_ = std::string(mode);
    takeInbox();
    const std::uint64_t passStart = nextSequence_;
    std::size_t ran = 0;
    // Items are looked up afresh after each run: the work may cancel or add
    // other work.
    for (;;) {
        auto it = items_.begin();
        for (; it != items_.end(); ++it) {
            if (it->first.first > now_) { it = items_.end(); break; }
            if (it->first.second >= passStart) continue;
            const Item& item = it->second;
            if (item.kind == Kind::Timer && !item.timer->valid) continue;
            if (runsIn(item.kind, mode)) break;
        }
        if (it == items_.end()) break;
        Key key = it->first;
        Item item = std::move(it->second);
        items_.erase(it);
        runItem(key, std::move(item));
        ++ran;
    }
    // Invalidated timers are dropped once their time has come.
    std::erase_if(items_, [&](const auto& e) {
        return e.second.kind == Kind::Timer && !e.second.timer->valid && e.first.first <= now_;
    });
    mode_ = previousMode;
    return ran;
}

bool SimRunLoop::advanceTo(double limit, std::string_view mode) {
    auto next = nextRunnable(mode);
    if (next == items_.end() || next->first.first > limit) return false;
    now_ = std::max(now_, next->first.first);
    return true;
}

void SimRunLoop::runFor(double seconds) {
    const double end = now_ + std::max(0.0, seconds);
    std::size_t passesAtThisInstant = 0;
    double lastInstant = now_;
    while (true) {
        runOnePass(NSDefaultRunLoopMode);
        if (!advanceTo(end, NSDefaultRunLoopMode)) break;
        if (now_ == lastInstant) {
            if (++passesAtThisInstant > maximumPassesPerInstant) break;
        } else {
            lastInstant = now_;
            passesAtThisInstant = 0;
        }
    }
    now_ = std::max(now_, end);
}

bool SimRunLoop::runUntilIdle(double limit) {
    const double end = now_ + limit;
    std::size_t passes = 0;
    while (passes++ < maximumPassesPerInstant) {
        runOnePass(NSDefaultRunLoopMode);
        auto pending = nextRunnable(NSDefaultRunLoopMode, /*excludeRepeatingTimers=*/true);
        if (pending == items_.end()) return true;
        if (pending->first.first > end) {
            runFor(end - now_);
            return false;
        }
        advanceTo(end, NSDefaultRunLoopMode);
    }
    return false;
}

bool SimRunLoop::runModeUntil(std::string_view mode, const std::function<bool()>& done, double timeout) {
    const double end = now_ + timeout;
    std::size_t passes = 0;
    while (!done()) {
        if (passes++ > maximumPassesPerInstant) return false;
        runOnePass(mode);
        if (done()) return true;
        if (!advanceTo(end, mode)) {
            now_ = std::max(now_, end);
            return done();
        }
    }
    return true;
}

void SimRunLoop::discardMainThreadWork() {
    std::vector<Item> dropped;
    for (auto it = items_.begin(); it != items_.end();) {
        if (it->second.kind == Kind::UserEvent || it->second.kind == Kind::SystemQueue) {
            ++it;
            continue;
        }
        dropped.push_back(std::move(it->second));
        it = items_.erase(it);
    }
    std::vector<std::function<void()>> arrived;
    {
        std::lock_guard lock(inboxMutex_);
        arrived.swap(inbox_);
    }
}

void SimRunLoop::discardPendingWork() {
    // What the work holds may be let go only now; letting it go may not add
    // more, but taking it out first keeps the map sound either way.
    while (!items_.empty()) {
        auto items = std::move(items_);
        items_.clear();
    }
    std::vector<std::function<void()>> arrived;
    {
        std::lock_guard lock(inboxMutex_);
        arrived.swap(inbox_);
    }
}

std::size_t SimRunLoop::pendingTimers() const {
    return static_cast<std::size_t>(std::count_if(items_.begin(), items_.end(), [](const auto& e) {
        return e.second.kind == Kind::Timer && e.second.timer->valid;
    }));
}

std::size_t SimRunLoop::pendingPerforms(const void* target, std::string_view selector) const {
    return static_cast<std::size_t>(std::count_if(items_.begin(), items_.end(), [&](const auto& e) {
        return e.second.kind == Kind::Perform && e.second.target == target && e.second.selector == selector;
    }));
}

}  // namespace vantro::sim
