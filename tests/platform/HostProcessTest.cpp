#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "Guide/Vantro.h"
#include "Overlay/VantroArrowView.h"
#include "Simulator/SimulatedMac.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

namespace vantro {
namespace {

// Holds each arrival until a second thread arrives too, or a short while has
// passed: where two threads can be inside at once, they will be.
class Rendezvous {
public:
    void arrive() {
        std::unique_lock lock(mutex_);
        ++arrivals_;
        changed_.notify_all();
        changed_.wait_for(lock, std::chrono::milliseconds(200), [&] { return arrivals_ >= 2; });
    }
    int arrivals() {
        std::lock_guard lock(mutex_);
        return arrivals_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int arrivals_ = 0;
};

Rendezvous* slowValueRendezvous = nullptr;

struct SlowValue {
    SlowValue() { slowValueRendezvous->arrive(); }
};

template <class Work>
void onThreadsAtOnce(int count, Work work) {
    std::atomic<int> ready = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i)
        threads.emplace_back([&, i] {
            ++ready;
            while (ready.load() < count) std::this_thread::yield();
            work(i);
        });
    for (auto& thread : threads) thread.join();
}

TEST(HostProcess, ConcurrentFirstRequestsForAValueMakeOne) {
    sim::SimulatedMac mac;
    Rendezvous rendezvous;
    slowValueRendezvous = &rendezvous;
    SlowValue* seen[2] = {};
    onThreadsAtOnce(2, [&](int i) { seen[i] = &mac.process().value<SlowValue>(); });
    EXPECT_EQ(seen[0], seen[1]);
    EXPECT_EQ(rendezvous.arrivals(), 1);
    slowValueRendezvous = nullptr;
}

// On a Mac nothing is installed until the first call: concurrent first calls
// of the shared instances, from any threads, must make one default process
// and one instance of each.
TEST(HostProcess, ConcurrentFirstCallsOnTheDefaultProcessGiveOneSharedInstance) {
    sim::SimulatedMac mac;
    HostProcess::uninstall(&mac.process());
    Rendezvous rendezvous;
    std::atomic<int> made = 0;
    HostProcess::setDefaultFactory([&] {
        ++made;
        rendezvous.arrive();
        return std::make_unique<HostProcess>(mac.makePlatform());
    });

    constexpr int threads = 8;
    std::vector<VantroRequestStatusCenter*> centers(threads);
    std::vector<Vantro*> guides(threads);
    std::vector<const Color*> arrowColors(threads);
    onThreadsAtOnce(threads, [&](int i) {
        centers[i] = VantroRequestStatusCenter::sharedRequestStatusCenter().get();
        guides[i] = Vantro::sharedKit().get();
        arrowColors[i] = vantroArrowColor().get();
    });

    EXPECT_EQ(made.load(), 1);
    EXPECT_EQ(std::set(centers.begin(), centers.end()).size(), 1u);
    EXPECT_EQ(std::set(guides.begin(), guides.end()).size(), 1u);
    EXPECT_EQ(std::set(arrowColors.begin(), arrowColors.end()).size(), 1u);
    EXPECT_NE(centers[0], nullptr);
    EXPECT_NE(guides[0], nullptr);

    // A new maker ends the default process; the simulated Mac is current again.
    HostProcess::setDefaultFactory(nullptr);
    HostProcess::install(&mac.process());
    EXPECT_EQ(&HostProcess::current(), &mac.process());
}

}  // namespace
}  // namespace vantro
